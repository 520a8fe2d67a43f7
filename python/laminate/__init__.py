"""Laminated composite shells: ply materials, layups, stiffness, ply
results, first-ply failure of NumPy arrays of load cases and failure
envelopes.

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
"""

import os as _os

from ._laminate import (FPF_DTYPE, Laminate, LaminateError, LayupError,
                        LibraryError, LoadsError, Material, MaterialError,
                        RecordError)
from ._laminate import _parse_library

__all__ = ['Material', 'Laminate', 'load_library', 'FPF_DTYPE',
           'LaminateError', 'RecordError', 'MaterialError', 'LayupError',
           'LoadsError', 'LibraryError', 'BUNDLED_LIBRARY']

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
