"""The module against the Tcl commands on the same laminates: stiffness,
engineering constants, ply results, first-ply failure of batches, envelopes
and materials, to the bit."""

import math
import os

import numpy as np
import pytest

import laminate
from conftest import assert_failure, assert_same, tcl_quote, tcl_word

SOURCE = os.path.join(os.path.dirname(__file__), '..', '..')
LAYUPS = [('[0/±45/90]s', 'T300/914C', 0.125), ('[(0/90)2/45_m]s', 'AS4/3501-6', 0.2),
          ('[30/-60/15]T', 'E-glass/LY556', 0.5)]
CRITERIA = ('tsaiwu', 'hashin', 'larc04')


def cases(n, seed):
    """n load cases: random mixes of every component, with zero rows, tiny
    values (snapped to 0) and single components."""
    rng = np.random.default_rng(seed)
    c = rng.normal(0.0, 200.0, (n, 8)) * (rng.random((n, 8)) < 0.6)
    c[0] = 0.0
    c[1, :] = 1e-7
    c[2, 3] = -50.0
    return c


def tcl_floats(row):
    return '{' + ' '.join(repr(float(v)) for v in row) + '}'


@pytest.fixture(scope='module')
def library():
    return laminate.load_library('bundled')


@pytest.mark.parametrize('notation,material,thickness', LAYUPS)
def test_layup_matches_tcl(tcl, library, notation, material, thickness):
    lam = laminate.Laminate.from_layup(notation, material=library[material], thickness=thickness)
    loads = cases(40, 7)
    script = ['laminate::material load bundled',
              'laminate::layup L %s -material %s -thickness %r' % (tcl_quote(notation), tcl_quote(material), thickness),
              'puts [laminate::abd L]']
    for row in loads[:6]:
        script.append('puts [laminate::evaluate L %s]' % tcl_floats(row))
    all_cases = '{' + ' '.join(tcl_floats(r) for r in loads) + '}'
    for c in CRITERIA:
        script.append('puts [laminate::batch L %s -criterion %s]' % (all_cases, c))
        script.append('puts [laminate::envelope L -plane {1 4} -criterion %s -points 24]' % c)
    out = tcl('\n'.join(script))

    assert_same(lam.abd(), out[0], 'abd')
    for i, row in enumerate(loads[:6]):
        ev = lam.evaluate(row)
        theirs = {tcl_word(out[1 + i][k]): out[1 + i][k + 1] for k in range(0, len(out[1 + i]), 2)}
        assert_same(ev['strains'], theirs['strains'], 'strains')
        assert_same(ev['plies'], theirs['plies'], 'plies')
        assert_same(ev['interlaminar'], theirs['interlaminar'], 'interlaminar')
        fpf = {tcl_word(theirs['fpf'][k]): theirs['fpf'][k + 1] for k in range(0, 6, 2)}
        for c in CRITERIA:
            assert_failure(ev['fpf'][c], fpf[c], 'evaluate fpf ' + c)
    for k, c in enumerate(CRITERIA):
        res = lam.fpf(loads, criterion=c)
        batch = out[7 + 2 * k]
        assert res.shape == (len(loads),) and len(batch) == len(loads)
        for i in range(len(loads)):
            assert_failure(res[i], batch[i][1], '%s case %d' % (c, i + 1), c)
        single = lam.fpf(loads[5], criterion=c)
        assert single.shape == () and single == res[5]
        env = lam.envelope(plane=(1, 4), criterion=c, points=24)
        theirs = out[8 + 2 * k]
        assert len(env) == 24
        for p, t in zip(env, theirs):
            if t[0] in ('undefined', 'overflow'):
                assert laminate.OUTCOMES[p['outcome']] == t[0] and p['x'] == math.inf
            else:
                assert_same([p['x'], p['y']], t, 'envelope ' + c)
    # Never NaN, never negative.
    for c in CRITERIA:
        f = lam.fpf(loads, criterion=c)['factor']
        assert not np.isnan(f).any() and (f >= 0).all()


def test_record_matches_tcl(tcl):
    with open(os.path.join(SOURCE, 'examples', 'cross_ply.rec')) as f:
        record = ' '.join(line.split('#')[0] for line in f)
    lam = laminate.Laminate.from_record(record)
    assert lam.record == record
    loads = cases(30, 3)
    out = tcl('laminate::define R %s\nputs [laminate::abd R]\n'
              'puts [laminate::batch R {%s} -criterion hashin]\nputs [laminate::evaluate R %s]'
              % (tcl_quote(record), ' '.join(tcl_floats(r) for r in loads), tcl_floats(loads[4])))
    assert_same(lam.abd(), out[0])
    res = lam.fpf(loads, criterion='hashin')
    for i in range(len(loads)):
        assert_failure(res[i], out[1][i][1], 'case %d' % (i + 1), 'hashin')
    ev = lam.evaluate(loads[4])
    theirs = {tcl_word(out[2][k]): out[2][k + 1] for k in range(0, len(out[2]), 2)}
    assert_same(ev['plies'], theirs['plies'])


def test_materials_and_plies_match_tcl(tcl):
    props = dict(E1=140000.0, E2=9000, nu12='0.3', G12=4600.5, Xt=2000, Xc=1400, Yt=60, Yc=220,
                 S12=85, sw=1.6e-9, alpha1=-0.5e-6, alpha2=3e-5, beta1=0, beta2=0.004, t=0.15)
    a = laminate.Material('A', **props)
    b = laminate.Material({'E1': 40000, 'E2': 10000, 'nu12': 0.28, 'G12': 3800, 'Xt': 1000,
                           'Xc': 700, 'Yt': 40, 'Yc': 130, 'S12': 60, 'sw': 2e-9, 'alpha1': 7e-6,
                           'alpha2': 2.2e-5, 'beta1': 0, 'beta2': 0.003, 't': 0.25})
    assert a.name == 'A' and b.name is None and a['G13'] == 4600.5
    lam = laminate.Laminate.from_plies([(a, 0), (b, 45, 0.3), (a, -45.5), (b, 90)])
    pairs = lambda p: ' '.join('%s %s' % (k, repr(v) if isinstance(v, float) else v) for k, v in p.items())
    out = tcl('laminate::material A {%s}\nlaminate::material B {%s}\n'
              'puts [laminate::material get A]\nputs [laminate::material get A -given]\n'
              'laminate::layup P {{A 0} {B 45 0.3} {A -45.5} {B 90}}\nputs [laminate::abd P]\n'
              'puts [laminate::evaluate P {10 -20 5 1 2 3 4 5}]'
              % (pairs(props), pairs(b.get(given=True))))
    assert_same(a.get(), out[0])
    assert a.get(given=True) == {k: (repr(v) if isinstance(v, float) else str(v)) for k, v in props.items()}
    eng = lam.abd()['engineering']
    assert {'weight', 'alpha', 'beta', 'alpha_curvature'} <= set(eng)
    assert_same(lam.abd(), out[2])
    ev = lam.evaluate([10, -20, 5, 1, 2, 3, 4, 5])
    theirs = {tcl_word(out[3][k]): out[3][k + 1] for k in range(0, len(out[3]), 2)}
    assert_same(ev['interlaminar'], theirs['interlaminar'])
    assert_same(ev['plies'], theirs['plies'])
    assert ev['interlaminar'].shape == (2 * lam.layers + 1, 3)


def test_threads_give_the_same_answers(library):
    lam = laminate.Laminate.from_layup('[0/45/-45/90]s', material=library['T300/5208'], thickness=0.125)
    loads = cases(10001, 11)
    for c in CRITERIA:
        one = lam.fpf(loads, criterion=c, threads=1)
        for k in (2, 3, 16):
            many = lam.fpf(loads, criterion=c, threads=k)
            assert many.tobytes() == one.tobytes(), (c, k)
    # A non-contiguous or integer array is read as float64 rows.
    assert lam.fpf(loads[::2]).tobytes() == lam.fpf(np.ascontiguousarray(loads[::2])).tobytes()
    ints = np.arange(16).reshape(2, 8)
    assert lam.fpf(ints).tobytes() == lam.fpf(ints.astype(float)).tobytes()
    assert lam.fpf(np.zeros((0, 8))).shape == (0,)
    never = lam.fpf(np.zeros(8))
    assert laminate.words(never, 'outcome') == 'never' and never['factor'] == math.inf and never['ply'] == 0
