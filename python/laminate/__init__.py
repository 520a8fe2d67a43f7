"""Laminated composite shells: ply materials, layups, stiffness, ply
results, first-ply failure of NumPy arrays of load cases under the model's
and the catalogue's criteria (with temperature and moisture changes held),
reserve factors of every ply, and failure envelopes.

The numbers are those of the Tcl package laminate::analysis, bit for bit,
for the same laminate and loads.

Examples
--------
>>> import numpy as np, laminate
>>> mat = laminate.load_library('bundled')['T300/5208']      # doctest: +SKIP
>>> lam = laminate.Laminate.from_layup('[0/±45/90]s', material=mat)
>>> cases = np.zeros((1000, 8)); cases[:, 0] = 100.0
>>> res = lam.fpf(cases, criterion='tsaiwu', threads=2)
>>> res['factor'][:3]
>>> laminate.words(res, 'outcome')[:3]
"""

import os as _os

from ._laminate import (CRITERIA, ENVELOPE_DTYPE, FACES, FPF_DTYPE, OUTCOMES,
                        VERDICTS, Laminate, LaminateError, LayupError,
                        LibraryError, LoadsError, Material, MaterialError,
                        RecordError, modes)
from ._laminate import _parse_library

__all__ = ['Material', 'Laminate', 'load_library', 'FPF_DTYPE', 'ENVELOPE_DTYPE',
           'CRITERIA', 'FACES', 'OUTCOMES', 'VERDICTS', 'modes', 'words', 'to_dataframe',
           'LaminateError', 'RecordError', 'MaterialError', 'LayupError',
           'LoadsError', 'LibraryError', 'BUNDLED_LIBRARY']

_WORD_FIELDS = ('face', 'mode', 'outcome', 'verdict')


def _table(field, criterion):
    if field == 'mode':
        if criterion is None:
            raise TypeError("words of the field 'mode' need the criterion")
        return modes(criterion)
    tables = {'face': FACES, 'outcome': OUTCOMES, 'verdict': VERDICTS}
    if field not in tables:
        raise ValueError('field %r holds no words: one of %s' % (field, ', '.join(_WORD_FIELDS)))
    return tables[field]


def words(answer, field, criterion=None):
    """The words of a coded field of an fpf or envelope answer.

    Parameters
    ----------
    answer : ndarray
        An answer of :meth:`Laminate.fpf` or :meth:`Laminate.envelope`.
    field : {'face', 'mode', 'outcome', 'verdict'}
    criterion : str, optional
        The criterion the answer was rated with; needed for 'mode'.

    Returns
    -------
    ndarray of str
        The same shape as ``answer``.

    Examples
    --------
    >>> res = lam.fpf(cases, criterion='puck')                  # doctest: +SKIP
    >>> laminate.words(res, 'mode', 'puck')                     # doctest: +SKIP
    array(['IFF-A', 'FF-t', ...], dtype='<U5')
    """
    import numpy as np
    return np.asarray(_table(field, criterion))[answer[field]]


def to_dataframe(answer, criterion):
    """An fpf or envelope answer as a pandas DataFrame, the coded fields as
    categoricals of their words (needs pandas: Debian python3-pandas).

    Parameters
    ----------
    answer : ndarray of FPF_DTYPE or ENVELOPE_DTYPE
    criterion : str
        The criterion the answer was rated with.

    Returns
    -------
    pandas.DataFrame
        One row per case, the columns in the order of the dtype.
    """
    import numpy as np
    import pandas as pd
    flat = np.atleast_1d(answer)
    columns = {}
    for name in flat.dtype.names:
        if name in _WORD_FIELDS:
            columns[name] = pd.Categorical.from_codes(flat[name].astype(np.int16),
                                                      categories=list(_table(name, criterion)))
        else:
            columns[name] = flat[name]
    return pd.DataFrame(columns)

#: The material library shipped with the package.
BUNDLED_LIBRARY = _os.path.join(_os.path.dirname(__file__), 'materials.lam')


def load_library(path):
    """Read a material library file.

    Parameters
    ----------
    path : str or os.PathLike
        The file, or ``'bundled'`` for the library shipped with the package
        (:data:`BUNDLED_LIBRARY`).

    Returns
    -------
    dict of str to Material
        The materials in file order.  A library is accepted or refused as a
        whole.

    Raises
    ------
    LibraryError
        The file cannot be read (``('LAMINATE', 'LIBRARY', 'OPEN', '0',
        '')``) or a line is refused (``('LAMINATE', 'LIBRARY', rule, line,
        key)``, the message that of laminate::material load).
    """
    where = BUNDLED_LIBRARY if path == 'bundled' else _os.fspath(path)
    try:
        with open(where, encoding='utf-8') as f:
            text = f.read()
    except (OSError, UnicodeDecodeError) as e:
        err = LibraryError('material library "%s": %s' % (where, getattr(e, 'strerror', None) or e))
        err.code = ('LAMINATE', 'LIBRARY', 'OPEN', '0', '')
        raise err from e
    return _parse_library(text, where)
