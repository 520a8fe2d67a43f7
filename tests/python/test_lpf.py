"""Last-ply failure in the module against laminate::lpf, to the bit, and
its errors."""

import math

import numpy as np
import pytest

import laminate
from conftest import UNRATED, assert_same, tcl_list, tcl_word
from test_bindings import tcl_floats
from test_catalogue import mixed, record
from test_errors import tcl_error

LOADS = [np.array(v, dtype=float) for v in (
    [100, 0, 0, 0, 0, 0, 0, 0],
    [80, -40, 25, 0, 0, 0, 0, 0],
    [0, 60, 0, 5, 0, -2, 3, 0],
    [0, 0, 0, 0, 0, 0, 0, 0])]


def tcl_dict(item):
    items = tcl_list(item)
    return {tcl_word(items[i]): items[i + 1] for i in range(0, len(items), 2)}


def assert_lpf(mine, theirs, where):
    """The module's answer against the Tcl dict: the same keys, the same
    numbers to the bit; a verdict word in last (and mos) is 0 (and its
    margin) here."""
    t = tcl_dict(theirs)
    assert set(mine) == set(t), where
    assert len(mine['events']) == len(tcl_list(t['events'])), where
    if tcl_word(t['last']) in UNRATED:
        assert mine['end'] == tcl_word(t['last']) and mine['last'] == 0.0, where
        for k in ('last', 'mos'):
            t.pop(k, None)
    assert_same(mine, [w for k, v in t.items() for w in (k, v)], where)
    for e, te in zip(mine['events'], tcl_list(t['events'])):
        assert set(e) == set(tcl_dict(te)), where
        assert e['strains'].shape == (8,) and e['factor'] >= 0 and not np.isnan(e['strains']).any(), where
    factors = [e['factor'] for e in mine['events']]
    assert factors == sorted(factors), where


def test_lpf_matches_tcl(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    runs = [(lam, 'P', {}, ''),
            (lam, 'P', dict(criterion='hashin2d', dT=-120.0, dM=0.003, fos=1.5),
             '-criterion hashin2d -dT -120.0 -dM 0.003 -fos 1.5'),
            (lam, 'P', dict(criterion='puck', dT=-80.0, degradation={'fibre': 0.0, 'matrix': {'E2': 0.2, 'G12': 0.3}}),
             '-criterion puck -dT -80.0 -degradation {fibre 0.0 matrix {E2 0.2 G12 0.3}}'),
            (lam, 'P', dict(criterion='maxstress', degradation={'fibre': {'E2': 1, 'E1': 0.01}, 'matrix': 0.1},
                            fos=2.0), '-criterion maxstress -degradation {fibre {E2 1 E1 0.01} matrix 0.1} -fos 2.0'),
            (rec, 'R', dict(criterion='tsaiwu2d'), ''),
            (rec, 'R', dict(criterion='puck', fos=1.2), '-criterion puck -fos 1.2')]
    script = [define + define_rec.rstrip()]
    for load in LOADS:
        for _, name, _, opts in runs:
            script.append('puts [laminate::lpf %s %s %s]' % (name, tcl_floats(load), opts))
    out = tcl('\n'.join(script))
    ends, line = set(), 0
    for i, load in enumerate(LOADS):
        for lam_, name, kw, opts in runs:
            mine = lam_.lpf(load, **kw)
            assert_lpf(mine, out[line], 'case %d %s %s' % (i + 1, name, opts))
            line += 1
            ends.add(mine['end'])
    # No event, a run to the end, and a ply that cannot be rated (puck on a
    # record: no fibre kind).
    assert {'unloaded', 'nodata'} <= ends and ends & {'broken', 'singular', 'carried'}
    # The residual stresses and the degradation change the answer.
    plain = lam.lpf(LOADS[1], criterion='puck')
    assert plain['events'][0]['factor'] != lam.lpf(LOADS[1], criterion='puck', dT=-80.0)['events'][0]['factor']
    soft = lam.lpf(LOADS[1], criterion='puck', degradation={'matrix': 0.5})
    assert [e['factor'] for e in soft['events']] != [e['factor'] for e in plain['events']]
    same = lam.lpf(LOADS[1], criterion='puck', degradation={'fibre': 1e-6, 'matrix': {'G12': 1e-6}})
    assert [(e['factor'], e['ply']) for e in same['events']] == [(e['factor'], e['ply']) for e in plain['events']]
    assert same['end'] == plain['end'] and np.array_equal(same['events'][-1]['strains'], plain['events'][-1]['strains'])


def test_lpf_errors_match_tcl(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    row = [10, 0, 0, 0, 0, 0, 0, 0]
    tcl_row = '{10 0 0 0 0 0 0 0}'
    # The same message and code as Tcl (the degradation named without its
    # dash).
    runs = [(dict(criterion='tsaiwu'), '-criterion tsaiwu'),
            (dict(criterion='bogus'), '-criterion bogus'),
            (dict(degradation={'shear': 0.1}), '-degradation {shear 0.1}'),
            (dict(degradation={'matrix': {'E1': 0.1}}), '-degradation {matrix {E1 0.1}}'),
            (dict(degradation={'fibre': {'G12': 'x'}}), '-degradation {fibre {G12 x}}'),
            (dict(degradation={'fibre': 1.5}), '-degradation {fibre 1.5}'),
            (dict(degradation={'matrix': 1}), '-degradation {matrix 1}'),
            (dict(degradation={'fibre': {'E2': -0.5}}), '-degradation {fibre {E2 -0.5}}')]
    for kw, opts in runs:
        script = define + 'catch {laminate::lpf P %s %s} msg opts\nputs [list $msg [dict get $opts -errorcode]]' % (
            tcl_row, opts)

        def call(kw=kw):
            return lam.lpf(row, **kw)
        with pytest.raises(laminate.LaminateError) as info:
            call()
        out = tcl(script)
        message = tcl_word(out[0][0]).replace('-degradation', 'degradation')
        assert (str(info.value), info.value.code) == (message, tuple(tcl_word(w) for w in out[0][1])), opts
    # Only the code where the value's text differs (a Python dict).
    for bad, code in (([0.1], 'SHAPE'), ({'matrix': {}}, 'SHAPE'), ({'matrix': 'x'}, 'SHAPE'),
                      ({'fibre': True}, 'SHAPE'), ({'fibre': {'E1': math.nan}}, 'FACTOR'),
                      ({'fibre': {'E1': 1.0}}, 'FACTOR')):
        with pytest.raises(laminate.LaminateError) as info:
            lam.lpf(row, degradation=bad)
        assert info.value.code[:3] == ('LAMINATE', 'DEGRADATION', code), bad
    # The module writes the value as Python does (nan, Tcl NaN).
    with pytest.raises(laminate.LoadsError) as info:
        lam.lpf([1, 2, math.nan, 0, 0, 0, 0, 0])
    message, code = tcl_error(tcl, define + 'laminate::lpf P {1 2 NaN 0 0 0 0 0}')
    assert (str(info.value).lower(), info.value.code) == (message.lower(), code)
    with pytest.raises(laminate.LoadsError) as info:
        lam.lpf(np.zeros((2, 8)))
    assert info.value.code == ('LAMINATE', 'LOADS', 'COUNT')
    # Options named without their dash; the laminate has no name.
    for call, code in ((lambda: rec.lpf(row, dT=-50), ('LAMINATE', 'THERMAL', 'NOALPHA', '')),
                       (lambda: lam.lpf(row, fos=0), ('LAMINATE', 'OPTION', 'fos')),
                       (lambda: lam.lpf(row, dM=math.nan), ('LAMINATE', 'OPTION', 'dM'))):
        with pytest.raises(laminate.LaminateError) as info:
            call()
        assert info.value.code == code
    # The options are read before the loads.
    with pytest.raises(laminate.LaminateError):
        lam.lpf([math.inf] * 8, degradation={'fibre': 2})
