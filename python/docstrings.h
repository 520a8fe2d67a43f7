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
    'larc04') a dict ``factor ply face mode outcome``; ``interlaminar``:
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
criterion : {'tsaiwu', 'hashin', 'larc04'}, default 'tsaiwu'
threads : int, default 1
    The rows are split into this many contiguous blocks, rated at once in
    as many threads.  The answers do not depend on it.  The GIL is released
    while the cases are rated.

Returns
-------
ndarray
    A structured array of shape () or (n,), dtype ``FPF_DTYPE``:
    ``factor`` (float64): the load factor at which the first ply fails;
    ``ply`` (int32, from 1; 0 for none); ``face`` ('top', 'bottom', 'none');
    ``mode`` ('tsaiwu'; 'matrix', 'fibre'; 'm1'..'m6'; 'none');
    ``outcome``: 'fails' (factor finite, >= 0), 'never' (no index ever
    reaches 1), 'undefined' (an index is NaN and nothing else fails) or
    'overflow' (the stresses or the factor beyond the largest double).
    ``factor`` is never NaN and never negative: it is ``inf`` exactly when
    the outcome is not 'fails'.  The Tcl commands write the factor of
    'undefined' and 'overflow' as those words.

Raises
------
LoadsError
    A shape other than (8,) or (n, 8) (``COUNT``), or a value that is not
    finite (``VALUE``; the message names the case from 1); nothing is rated.
LaminateError
    An unknown criterion (``('LAMINATE', 'CRITERION', word)``) or
    threads < 1.
)";

char const* const Envelope = R"(The first-ply-failure envelope in the plane of two load components.

Parameters
----------
plane : tuple of int, default (1, 2)
    The two load components, counted 1..8 (N1 N2 N12 M1 M2 M12 Q1 Q2).
criterion : {'tsaiwu', 'hashin', 'larc04'}, default 'tsaiwu'
points : int, default 72
    Rays through the origin, ray r at the angle 2 pi r / points from the
    first component's axis (1..100000).

Returns
-------
ndarray
    A structured array of shape (points,): ``x``, ``y`` the failure load
    on the ray, then the fields of :meth:`fpf`.  A ray that never fails has
    infinite coordinates (0 where its direction has no component); a ray
    whose outcome is 'undefined' or 'overflow' has no point: ``x`` and
    ``y`` are ``inf`` and ``outcome`` says why.  Plot
    ``env[env['outcome'] == 'fails']``.
)";

}  // namespace doc

#endif
