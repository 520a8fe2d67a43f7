"""The catalogue's criteria in the module against the Tcl commands: fpf of
batches and envelopes with temperature, moisture and a factor of safety,
rate, and their errors, to the bit."""

import math
import os
import re

import numpy as np
import pytest

import laminate
from conftest import UNRATED, assert_failure, same_bits, tcl_double, tcl_list, tcl_quote, tcl_word
from test_bindings import cases, tcl_floats
from test_errors import check

SOURCE = os.path.join(os.path.dirname(__file__), '..', '..')
CATALOGUE = laminate.CRITERIA[3:]
PLIES_A = dict(E1=140000.0, E2=9000, nu12=0.3, G12=4600.5, Xt=2000, Xc=1400, Yt=60, Yc=220, S12=85,
               S23=70, alpha1=-0.5e-6, alpha2=3e-5, beta1=0, beta2=0.004, t=0.15, fibre='carbon',
               GIc=0.2, GIIc=0.8)
PLIES_B = dict(E1=40000, E2=10000, nu12=0.28, G12=3800, Xt=1000, Xc=700, Yt=40, Yc=130, S12=60,
               alpha1=7e-6, alpha2=2.2e-5, beta1=0, beta2=0.003, t=0.25, fibre='glass')
LAYUP = [('A', 0), ('B', 45, 0.3), ('A', -45.5), ('B', 90), ('A', 0, 0.1)]


def pairs(props):
    return ' '.join('%s %s' % (k, repr(v) if isinstance(v, float) else v) for k, v in props.items())


def mixed():
    """The laminate of two materials with expansion coefficients, here and as
    the Tcl laminate P."""
    mats = {'A': laminate.Material('A', **PLIES_A), 'B': laminate.Material('B', **PLIES_B)}
    lam = laminate.Laminate.from_plies([(mats[p[0]],) + p[1:] for p in LAYUP])
    define = 'laminate::material A {%s}\nlaminate::material B {%s}\nlaminate::layup P {%s}\n' % (
        pairs(PLIES_A), pairs(PLIES_B), ' '.join('{%s}' % ' '.join(str(x) for x in p) for p in LAYUP))
    return lam, define


def record():
    with open(os.path.join(SOURCE, 'examples', 'cross_ply.rec')) as f:
        text = ' '.join(line.split('#')[0] for line in f)
    return laminate.Laminate.from_record(text), 'laminate::define R %s\n' % tcl_quote(text)


def test_fpf_matches_tcl_batch(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    loads = cases(30, 5)
    loads[3] = [0, 0, 0, 0, 0, 0, 5, 0]   # transverse shear alone
    all_cases = '{' + ' '.join(tcl_floats(r) for r in loads) + '}'
    runs = [(c, -120.0, 0.004, 1.5) for c in CATALOGUE] + [('puck', 0.0, 0.0, 1.0), ('larc03', 35.5, 0.0, 2.0),
                                                            ('maxstrain', -2500.0, 0.0, 1.0)]
    script = [define + define_rec.rstrip()]
    for c, dT, dM, fos in runs:
        script.append('puts [laminate::batch P %s -criterion %s -dT %r -dM %r -fos %r]' % (all_cases, c, dT, dM, fos))
    for c in CATALOGUE:
        script.append('puts [laminate::batch R %s -criterion %s]' % (all_cases, c))
    out = tcl('\n'.join(script))
    verdicts = set()
    for k, (c, dT, dM, fos) in enumerate(runs):
        res = lam.fpf(loads, criterion=c, dT=dT, dM=dM, fos=fos)
        assert res.dtype == laminate.FPF_DTYPE and len(out[k]) == len(loads)
        for i in range(len(loads)):
            assert_failure(res[i], out[k][i][1], '%s case %d' % (c, i + 1), c)
        assert res.tobytes() == lam.fpf(loads, criterion=c, dT=dT, dM=dM, fos=fos, threads=3).tobytes()
        verdicts |= set(laminate.words(res, 'verdict'))
        assert not np.isnan(res['factor']).any() and (res['factor'] >= 0).all() and not np.isnan(res['mos']).any()
    for k, c in enumerate(CATALOGUE):
        res = rec.fpf(loads, criterion=c)
        for i in range(len(loads)):
            assert_failure(res[i], out[len(runs) + k][i][1], 'record %s case %d' % (c, i + 1), c)
        verdicts |= set(laminate.words(res, 'verdict'))
    # ok, residual (the cool-down), never (the zero case) and a word of a
    # ply that cannot be rated (puck on a record: no fibre kind).
    assert {'ok', 'residual', 'never', 'nodata'} <= verdicts
    single = lam.fpf(loads[4], criterion='hashin2d', dT=-120.0)
    assert single.shape == () and single == lam.fpf(loads, criterion='hashin2d', dT=-120.0)[4]


def assert_rating(mine, theirs, where):
    """A ply's rating dict against the Tcl dict {rf mos index face mode verdict ?extras?}."""
    items = tcl_list(theirs)
    t = {tcl_word(items[i]): tcl_word(items[i + 1]) for i in range(0, len(items), 2)}
    assert set(t) - {'rf', 'mos', 'index'} <= set(mine), where
    assert (mine['face'], mine['mode'], mine['verdict']) == (t['face'], t['mode'], t['verdict']), where
    if t['rf'] in UNRATED:
        assert mine['rf'] == 0.0 and mine['index'] == 0.0 and mine['index_verdict'] == t['rf'], where
    else:
        for key in ('rf', 'mos'):
            assert same_bits(mine[key], tcl_double(t[key])), '%s %s: %r != Tcl %s' % (where, key, mine[key], t[key])
        if t['index'] in UNRATED:
            assert mine['index_verdict'] == t['index'] and mine['index'] == 0.0, where
        else:
            assert same_bits(mine['index'], tcl_double(t['index'])) and mine['index_verdict'] == 'ok', where
    for extra in set(t) - {'rf', 'mos', 'index', 'face', 'mode', 'verdict'}:
        assert same_bits(mine[extra], tcl_double(t[extra])), '%s %s' % (where, extra)
    assert not any(isinstance(v, float) and math.isnan(v) for v in mine.values()), where


def test_rate_matches_tcl(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    loads = cases(6, 9)
    runs = [(None, 0.0, 0.0, 1.0, ''), (['larc03', 'hashin2d', 'larc03', 'maxstress'], -150.0, 0.002, 1.25,
                                         '-criteria {larc03 hashin2d larc03 maxstress} -dT -150.0 -dM 0.002 -fos 1.25'),
            ('puck', 80.0, 0.0, 3.0, '-criteria puck -dT 80.0 -fos 3.0')]
    script = [define + define_rec.rstrip()]
    for row in loads:
        for _, _, _, _, opts in runs:
            script.append('puts [laminate::rate P %s %s]' % (tcl_floats(row), opts))
        script.append('puts [laminate::rate R %s -criteria {puck tsaihill}]' % tcl_floats(row))
    out = tcl('\n'.join(script))
    line = 0
    seen = set()
    for i, row in enumerate(loads):
        answers = [(lam.rate(row, criteria=crit, dT=dT, dM=dM, fos=fos), crit) for crit, dT, dM, fos, _ in runs]
        answers.append((rec.rate(row, criteria=('puck', 'tsaihill')), None))
        for mine, crit in answers:
            theirs = {tcl_word(out[line][k]): out[line][k + 1] for k in range(0, len(out[line]), 2)}
            line += 1
            assert len(mine['plies']) == len(theirs['plies'])
            for layer, (p, t) in enumerate(zip(mine['plies'], theirs['plies'])):
                t = {tcl_word(t[k]): t[k + 1] for k in range(0, len(t), 2)}
                assert list(p) == list(t), 'criteria in the order named, each once'
                for c in p:
                    assert_rating(p[c], t[c], 'case %d layer %d %s' % (i + 1, layer + 1, c))
                    seen.add(p[c]['verdict'])
            fpf = {tcl_word(theirs['fpf'][k]): theirs['fpf'][k + 1] for k in range(0, len(theirs['fpf']), 2)}
            for c in mine['fpf']:
                assert_failure(mine['fpf'][c], fpf[c], 'rate fpf case %d %s' % (i + 1, c), c)
    assert list(lam.rate(loads[0])['fpf']) == ['tsaiwu2d', 'puck', 'maxstrain']
    assert 'theta_fp' in lam.rate(loads[4], criteria='puck')['plies'][0]['puck']
    assert {'ok', 'nodata'} <= seen


def test_envelope_matches_tcl(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    runs = [('tsaiwu2d', (1, 2), -100.0, 0.0, 1.0), ('larc03', (1, 6), 0.0, 0.003, 1.5),
            ('maxstrain', (2, 3), -400.0, 0.0, 2.0), ('hashin', (1, 4), 0.0, 0.0, 1.2)]
    script = [define + define_rec.rstrip()]
    for c, plane, dT, dM, fos in runs:
        script.append('puts [laminate::envelope P -plane {%d %d} -criterion %s -points 36 -dT %r -dM %r -fos %r]'
                      % (plane + (c, dT, dM, fos)))
    script.append('puts [laminate::envelope R -plane {1 2} -criterion puck -points 8]')
    out = tcl('\n'.join(script))
    answers = [(lam.envelope(plane=p, criterion=c, points=36, dT=dT, dM=dM, fos=fos), c) for c, p, dT, dM, fos in runs]
    answers.append((rec.envelope(criterion='puck', points=8), 'puck'))
    for (env, c), theirs in zip(answers, out):
        assert env.dtype == laminate.ENVELOPE_DTYPE and len(env) == len(theirs)
        for p, t in zip(env, theirs):
            if t[0] in UNRATED + ('undefined', 'overflow'):
                assert p['x'] == math.inf and p['y'] == math.inf
                assert t[0] in (laminate.words(p, 'verdict'), laminate.words(p, 'outcome')), c
            else:
                assert same_bits(p['x'], tcl_double(t[0])) and same_bits(p['y'], tcl_double(t[1])), c
    # Residual stresses that fail alone: every ray at the origin.
    hot = lam.envelope(criterion='maxstrain', points=4, dT=-5000.0)
    assert (laminate.words(hot, 'verdict') == 'residual').all() and (hot['x'] == 0).all() and (hot['y'] == 0).all()


def test_catalogue_errors_match_tcl(tcl):
    lam, define = mixed()
    rec, define_rec = record()
    row = [10, 0, 0, 0, 0, 0, 0, 0]
    # The same message and code as Tcl.
    check(tcl, laminate.LaminateError, lambda: lam.fpf(row, criterion='tsaiwu3'),
          define + 'laminate::fpf P {10 0 0 0 0 0 0 0} -criterion tsaiwu3')
    check(tcl, laminate.LaminateError, lambda: lam.rate(row, criteria=['puck', 'hashin']),
          define + 'laminate::rate P {10 0 0 0 0 0 0 0} -criteria {puck hashin}')
    # The same rule words and message; options are named without their
    # dash, and the laminate has no name.
    runs = [(lambda: lam.fpf(row, criterion='tsaiwu', dT=-50), 'laminate::fpf P {%s} -criterion tsaiwu -dT -50'),
            (lambda: rec.fpf(row, criterion='puck', dT=-50), 'laminate::fpf R {%s} -criterion puck -dT -50'),
            (lambda: rec.rate(row, dM=0.01), 'laminate::rate R {%s} -dM 0.01'),
            (lambda: lam.envelope(criterion='puck', fos=0), 'laminate::envelope P -plane {1 2} -criterion puck -fos 0'),
            (lambda: lam.fpf(row, dM=math.nan), 'laminate::fpf P {%s} -dM nan')]
    for call, command in runs:
        with pytest.raises(laminate.LaminateError) as info:
            call()
        out = tcl(define + define_rec + 'catch {%s} msg opts\nputs [list $msg [dict get $opts -errorcode]]'
                  % command.replace('%s', ' '.join(str(v) for v in row)))
        message = re.sub(r"material '[PR]'", 'laminate', tcl_word(out[0][0])).replace('laminate::layup', 'layup')
        message = re.sub(r'(^|\W)-(dT|dM|fos)', r'\1\2', message)
        code = tuple(tcl_word(w).lstrip('-') for w in out[0][1])
        if code[1] == 'THERMAL' and code[2] != 'MODELCRITERION':
            code = code[:3] + ('',)
        assert (str(info.value), info.value.code) == (message, code), command
    with pytest.raises(laminate.LaminateError) as info:
        lam.envelope(criterion='puck', fos=0)
    assert info.value.code == ('LAMINATE', 'OPTION', 'fos') and str(info.value) == \
        'fos: expected a finite number above 0, got "0"'
    # Nothing is rated before the options are read.
    with pytest.raises(laminate.LoadsError):
        lam.fpf(np.array([row, [math.inf] * 8]), criterion='puck')
