// The numpydoc docstrings of the module's classes and methods.
#ifndef LAMINATE_PYTHON_DOCSTRINGS_H
#define LAMINATE_PYTHON_DOCSTRINGS_H

namespace doc {

char const* const Material = R"(A ply material with named properties.

Parameters
----------
name : str, optional
    The material's name, quoted in messages.  A dict given here instead is
    taken as ``props``.
props : dict, optional
    Properties as key-value pairs, read in order before ``**kwargs``.
**kwargs
    More properties: E1, E2, nu12, G12 (required), G13, G23, nu23, Xt, Xc,
    Yt, Yc, S12, S23, S13, t, sw, GIc, GIIc, alpha1, alpha2, beta1, beta2,
    e1t, e1c, e2t, e2c, g12u, p12t, p12c, p23t, p23c, alpha0, assess,
    fibre, units, source, note.  Numbers may be floats, ints or decimal
    text; a float is read from its shortest repr, so it keeps its value.

Raises
------
MaterialError
    When a property breaks a rule; ``code`` is
    ``('LAMINATE', 'MATERIAL', rule, key)``, the message that of the Tcl
    command laminate::material.

Examples
--------
>>> cfrp = laminate.Material('T300', E1=135000, E2=10000, nu12=0.3, G12=5000,
...                          Xt=1500, Xc=1200, Yt=50, Yc=250, S12=70, t=0.125)
)";

char const* const MaterialGet = R"(The material's properties.

Parameters
----------
given : bool, default False
    Only the properties given, as written (text); otherwise every value it
    has, defaults included, numbers as floats.

Returns
-------
dict
    Key to value, in the order of the key table.
)";

char const* const Laminate = R"(A laminate, prepared once for any number of load cases.

Made by :meth:`from_layup`, :meth:`from_plies` or :meth:`from_record`,
never changed afterwards: one object may be used from several threads at
once.  Layer 1 lies at the lowest z; loads are the 8 generalized
resultants N1 N2 N12 M1 M2 M12 Q1 Q2, in the record's units; load values
of magnitude up to 1e-6 count as 0, as in the Tcl commands.
)";

char const* const FromRecord = R"(A laminate from its record, read strictly.

Parameters
----------
text : str
    The layer count, then per layer 17 reals and the failure flag (0 or 1).

Returns
-------
Laminate

Raises
------
RecordError
    ``code`` is ``('LAMINATE', 'RECORD', rule, layer, field)``.
)";

char const* const FromLayup = R"(A laminate from a stacking sequence of one material.

Parameters
----------
layup : str
    The notation, e.g. ``"[0/±45/90]s"``, ``"[(0/90)2]s"``, ``"[0/45/90_m]s"``.
material : Material
    The material of every ply.
thickness : float, optional
    The thickness of every ply; by default the material's ``t``.

Returns
-------
Laminate

Raises
------
LayupError
    Bad notation (``('LAMINATE', 'LAYUP', 'SYNTAX', column)``), no material,
    or plies the record cannot be made of (``('LAMINATE', 'LAYUP', rule,
    layer, material)``).
RecordError
    When the record made is refused by the strict reader.
)";

char const* const FromPlies = R"(A laminate from a list of plies, layer 1 first.

Parameters
----------
plies : iterable of tuple
    ``(material, angle)`` or ``(material, angle, thickness)``.
thickness : float, optional
    The thickness of every ply that gives none; by default its material's ``t``.

Returns
-------
Laminate

Raises
------
LayupError, RecordError
)";

char const* const Abd = R"(The stiffness the stress recovery uses, and the engineering constants.

Returns
-------
dict
    ``A``, ``B``, ``D`` (3, 3), ``H`` (2, 2), ``K`` (8, 8) arrays,
    ``thickness`` (float) and ``engineering``: a dict with ``status``
    ('ok', 'notpositive', 'singular'), ``abd`` the (6, 6) compliance,
    membrane and flexural moduli and Poisson ratios (``Ex`` ``Ey`` ``Gxy``
    ``nuxy`` ``nuyx`` ``Exb`` ``Eyb`` ``Gxyb`` ``nuxyb`` ``nuyxb``),
    ``weight`` when every ply has a specific weight, ``alpha``,
    ``alpha_curvature``, ``beta``, ``beta_curvature`` (3,) when every ply's
    material has its expansion coefficients.
)";

char const* const Evaluate = R"(Every layer under one load case.

Parameters
----------
loads : array_like, shape (8,)
    N1 N2 N12 M1 M2 M12 Q1 Q2.

Returns
-------
dict
    ``strains`` (8,): ex ey gxy kx ky kxy gxz gyz; ``plies``: one dict per
    layer, layer 1 first, with the keys of the Tcl command laminate::evaluate
    (vectors as (3,) arrays); ``fpf``: per criterion ('tsaiwu', 'hashin',
    'larc04') a dict ``factor ply face mode outcome verdict mos`` (words,
    see :meth:`fpf`); ``interlaminar``:
    an (m, 3) array of ``z``, ``tau_xz``, ``tau_yz`` at every ply face and
    middle, lowest face first, recovered from equilibrium.

Raises
------
LoadsError
    Not 8 finite numbers (``code`` ``('LAMINATE', 'LOADS', 'COUNT' | 'VALUE')``).
)";

char const* const Fpf = R"(First-ply failure of one or many load cases.

Parameters
----------
loads : array_like, shape (8,) or (n, 8)
    Load cases, one per row.
criterion : str, default 'tsaiwu'
    One of :data:`CRITERIA`: the model's 'tsaiwu', 'hashin', 'larc04', or
    a criterion of the catalogue ('maxstress', 'maxstrain', 'tsaihill',
    'hoffman', 'tsaiwu2d', 'hashin2d', 'puck', 'larc03').
dT, dM : float, default 0
    Temperature and moisture change from the stress-free state, held while
    the mechanical loads are scaled (the catalogue's criteria only; they
    need every ply's alpha1 alpha2, beta1 beta2).
fos : float, default 1
    Factor of safety of ``mos``.
threads : int, default 1
    The rows are split into this many contiguous blocks, rated at once in
    as many threads.  The answers do not depend on it.  The GIL is released
    while the cases are rated.

Returns
-------
ndarray
    A structured array of shape () or (n,), dtype ``FPF_DTYPE`` (24 bytes
    a row): ``factor`` (float64), ``mos`` (float64, ``factor / fos - 1``),
    ``ply`` (int32, from 1; 0 for none), and four word codes (uint8):
    ``face`` (in :data:`FACES`), ``mode`` (in ``modes(criterion)``),
    ``outcome`` (in :data:`OUTCOMES`: 'fails', 'never', 'undefined',
    'overflow') and ``verdict`` (in :data:`VERDICTS`: 'none' for the
    model's criteria, else the catalogue's verdict).  :func:`words` turns
    a field into its words.

    The model's criteria: ``factor`` is finite exactly when the outcome is
    'fails', ``inf`` otherwise.  The catalogue's: ``factor`` is the reserve
    factor with the residual stresses held, ``outcome`` 'fails' for the
    verdicts 'ok' and 'residual' (factor 0), 'never' (factor ``inf``) for
    'never', 'undefined' for a ply that cannot be rated ('nostrength',
    'nodata', 'nonfinite', 'badparameter'; factor 0, ply the first such).
    Never NaN, never negative.

Raises
------
LoadsError
    A shape other than (8,) or (n, 8) (``COUNT``), or a value that is not
    finite (``VALUE``; the message names the case from 1); nothing is rated.
LaminateError
    An unknown criterion (``('LAMINATE', 'CRITERION', word)``), threads < 1
    or a bad dT, dM, fos (``('LAMINATE', 'OPTION', name)``), dT or dM
    without the coefficients (``('LAMINATE', 'THERMAL', 'NOALPHA' |
    'NOBETA', '')``) or with a model criterion (``('LAMINATE', 'THERMAL',
    'MODELCRITERION', name)``).
)";

char const* const Envelope = R"(The first-ply-failure envelope in the plane of two load components.

Parameters
----------
plane : tuple of int, default (1, 2)
    The two load components, counted 1..8 (N1 N2 N12 M1 M2 M12 Q1 Q2).
criterion : str, default 'tsaiwu'
    One of :data:`CRITERIA`.
points : int, default 72
    Rays through the origin, ray r at the angle 2 pi r / points from the
    first component's axis (1..100000).
dT, dM : float, default 0
    Held while the mechanical loads are scaled (catalogue criteria only).
fos : float, default 1
    Every point is divided by it: the envelope of allowable loads.

Returns
-------
ndarray
    A structured array of shape (points,), dtype ``ENVELOPE_DTYPE``: ``x``,
    ``y`` the failure load on the ray, then the fields of :meth:`fpf`.  A
    ray that never fails has infinite coordinates (0 where its direction
    has no component); residual stresses that fail alone give the origin; a
    ray whose outcome is 'undefined' or 'overflow' has no point: ``x`` and
    ``y`` are ``inf``.  Plot ``env[env['outcome'] == OUTCOMES.index('fails')]``.
)";

char const* const Rate = R"(Reserve factors of every ply under the catalogue's criteria, one load case.

Parameters
----------
loads : array_like, shape (8,)
    N1 N2 N12 M1 M2 M12 Q1 Q2.
criteria : str or sequence of str, optional
    Criteria of the catalogue; by default ('tsaiwu2d', 'puck', 'maxstrain').
dT, dM : float, default 0
    Temperature and moisture change, residual stresses held.
fos : float, default 1
    Factor of safety of the margins.

Returns
-------
dict
    ``plies``: a list, layer 1 first, of dicts keyed by criterion, each the
    worse face's ``rf`` (0 residual, ``inf`` never), ``mos`` (rf / fos -
    1), ``index`` (at the loads given, residual + mechanical) with
    ``index_verdict``, ``face``, ``mode`` ('none' when never or not rated),
    ``verdict`` ('ok', 'never', 'residual', 'nostrength', 'nodata',
    'nonfinite', 'badparameter', 'unassessed') and the criterion's extra
    outputs at the failure state where it gives them (``theta_fp`` of Puck,
    ``alpha``, ``phi`` of LaRC03, degrees).  A ply that is not assessed (a
    core: ``assess`` 0) has ``rf`` ``inf``.  A ply that cannot be rated has
    ``rf`` 0, ``index`` 0 and its verdict.  ``fpf``: per criterion the laminate's
    first-ply failure as a dict ``factor ply face mode outcome verdict mos``
    (the fields of :meth:`fpf`, as words).  Never NaN.

Raises
------
LaminateError
    A model criterion (``('LAMINATE', 'CRITERION', 'MODEL', name)``), an
    unknown one, a bad option, dT or dM without the coefficients.
LoadsError
    Not 8 finite numbers.
)";

char const* const Lpf = R"(Last-ply failure: the load followed upward through the failures of the plies.

Each failed ply is degraded and the laminate solved again, until it carries
no more: a fibre mode breaks a ply (E1, E2, G12 scaled), any other mode
cracks it (E2, G12 scaled; then only a fibre mode counts for it).  Plies
within 1e-9 (relative) of the smallest reserve factor fail together, one
event each.  The same numbers as the Tcl command laminate::lpf.

Parameters
----------
loads : array_like, shape (8,)
    N1 N2 N12 M1 M2 M12 Q1 Q2.
criterion : str, default 'tsaiwu2d'
    A criterion of the catalogue (not the model's tsaiwu, hashin, larc04).
dT, dM : float, default 0
    Temperature and moisture change, residual stresses held.
degradation : dict, optional
    The factors on a failed ply's moduli, by mode: ``{'fibre': F, 'matrix':
    M}`` (every modulus the mode scales), or by modulus, ``{'fibre': {'E1':
    a, 'E2': b, 'G12': c}, 'matrix': {'E2': d, 'G12': e}}``; what is left
    out stays 1e-6.  Fibre E1 and every matrix factor lie in [0, 1), fibre
    E2 and G12 in [0, 1] (1 keeps the modulus).
fos : float, optional
    Factor of safety: adds ``mos`` (factor / fos - 1) to the answer and to
    every event.

Returns
-------
dict
    ``criterion``; ``events``: a list in load order of dicts ``factor``,
    ``ply`` (layer, from 1), ``face`` ('top' or 'bottom'), ``mode`` (the
    criterion's mode word), ``strains`` (ndarray (8,), the generalized
    strains at the factor, from the stiffness just before the event) and
    ``mos`` with fos; ``last``: the factor of the last event (``inf`` when
    nothing fails, or nothing fails any further); ``end``: why the run ended,
    'unloaded' (no event), 'broken' (every ply broken), 'singular' (the
    stiffness left no longer carries the loads), 'carried', or the verdict
    word of a ply that cannot be rated ('nostrength', 'nodata', 'nonfinite',
    'badparameter'; then ``last`` is 0); ``mos`` with fos.  Never NaN.

Raises
------
LaminateError
    An unknown or model criterion (``('LAMINATE', 'CRITERION', name)``), a
    bad option, a bad degradation (``('LAMINATE', 'DEGRADATION', rule,
    ...)``, rule SHAPE, MODE, MODULUS or FACTOR), dT or dM without the
    coefficients.
LoadsError
    Not 8 finite numbers.

Examples
--------
>>> r = lam.lpf([100, 0, 0, 0, 0, 0, 0, 0], degradation={'matrix': 0.2})  # doctest: +SKIP
>>> [(e['factor'], e['ply'], e['mode']) for e in r['events']], r['end']  # doctest: +SKIP
)";

char const* const Modes = R"(The mode words of a criterion, by code: 'none' first.

Parameters
----------
criterion : str
    One of :data:`CRITERIA`.

Returns
-------
tuple of str
    ``modes(c)[row['mode']]`` is the word of an answer's mode.
)";

}  // namespace doc

#endif
