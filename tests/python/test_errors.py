"""Errors: the classes, and the messages and codes of the Tcl commands."""

import math

import numpy as np
import pytest

import laminate
from conftest import tcl_quote, tcl_word

BASE = dict(E1='140000', E2='9000', nu12='0.3', G12='4600', t='0.125')


def tcl_error(tcl, command):
    out = tcl('catch {%s} msg opts\nputs [list $msg [dict get $opts -errorcode]]' % command)
    return tcl_word(out[0][0]), tuple(tcl_word(w) for w in out[0][1])


def check(tcl, exc_class, call, command):
    with pytest.raises(exc_class) as info:
        call()
    assert isinstance(info.value, ValueError) and isinstance(info.value, laminate.LaminateError)
    message, code = tcl_error(tcl, command)
    assert (str(info.value), info.value.code) == (message, code)


def test_material_errors_match_tcl(tcl):
    for key, value in (('E1', '-5'), ('nu12', '4.0'), ('E2', 'abc'), ('Xt', '1e999'), ('fibre', 'wood'),
                       ('bogus', '1')):
        props = dict(BASE, **{key: value})
        pairs = ' '.join('%s %s' % kv for kv in props.items())
        check(tcl, laminate.MaterialError, lambda: laminate.Material('M', **props),
              'laminate::material M {%s}' % pairs)
    props = dict(BASE)
    del props['G12']
    check(tcl, laminate.MaterialError, lambda: laminate.Material('M', props),
          'laminate::material M {%s}' % ' '.join('%s %s' % kv for kv in props.items()))


def test_record_errors_match_tcl(tcl):
    good = '1  140000 9000 0.3 4600 4600 3200 1400 220 2000 60 85 60 85 0 0 0.125 0 1'
    for bad in (good.replace(' 4600 3200', ' 0 3200'), good + ' 5', '0', good.replace(' 0.3 ', ' 4.0 '),
                good.replace(' 1400 ', ' x ')):
        check(tcl, laminate.RecordError, lambda: laminate.Laminate.from_record(bad),
              'laminate::define R %s' % tcl_quote(bad))


def test_layup_errors_match_tcl(tcl):
    m = laminate.Material('M', **BASE)
    no_t = laminate.Material('N', **{k: v for k, v in BASE.items() if k != 't'})
    define = 'laminate::material M {%s}\nlaminate::material N {%s}\n' % (
        ' '.join('%s %s' % kv for kv in BASE.items()),
        ' '.join('%s %s' % kv for kv in BASE.items() if kv[0] != 't'))
    for notation in ('[0/45', '[0/±45_2]s', '[]', '[0/x]'):
        check(tcl, laminate.LayupError, lambda: laminate.Laminate.from_layup(notation, material=m),
              define + 'laminate::layup L %s -material M' % tcl_quote(notation))
    check(tcl, laminate.LayupError, lambda: laminate.Laminate.from_layup('[0/90]', material=no_t),
          define + 'laminate::layup L {[0/90]} -material N')
    check(tcl, laminate.LayupError, lambda: laminate.Laminate.from_plies([(m, 0), (no_t, 90)]),
          define + 'laminate::layup L {{M 0} {N 90}}')
    check(tcl, laminate.LayupError, lambda: laminate.Laminate.from_plies([]),
          define + 'laminate::layup L {}')
    with pytest.raises(laminate.LayupError) as info:
        laminate.Laminate.from_layup('[0/90]s')
    assert info.value.code == ('LAMINATE', 'LAYUP', 'MATERIAL', '0', '')
    with pytest.raises(laminate.LayupError) as info:
        laminate.Laminate.from_plies([(m, 0), (m, math.nan)])
    assert info.value.code == ('LAMINATE', 'LAYUP', 'PLY', '2')
    with pytest.raises(laminate.LayupError) as info:
        laminate.Laminate.from_layup('[0]', material=m, thickness=-1)
    assert info.value.code == ('LAMINATE', 'OPTION', 'thickness')


def test_load_and_option_errors(tcl):
    lam = laminate.Laminate.from_layup('[0/90]s', material=laminate.Material('M', **BASE))
    define = 'laminate::material M {%s}\nlaminate::layup L {[0/90]s} -material M\n' % \
        ' '.join('%s %s' % kv for kv in BASE.items())
    rows = np.zeros((3, 8))
    rows[1, 2] = math.nan
    check(tcl, laminate.LoadsError, lambda: lam.fpf(rows),
          define + 'laminate::batch L {{0 0 0 0 0 0 0 0} {0 0 nan 0 0 0 0 0} {0 0 0 0 0 0 0 0}}')
    check(tcl, laminate.LoadsError, lambda: lam.evaluate([0, 0, 0, 0, 0, math.inf, 0, 0]),
          define + 'laminate::evaluate L {0 0 0 0 0 inf 0 0}')
    for bad in (np.zeros(7), np.zeros((2, 9)), np.zeros((2, 2, 8))):
        with pytest.raises(laminate.LoadsError) as info:
            lam.fpf(bad)
        assert info.value.code == ('LAMINATE', 'LOADS', 'COUNT')
    with pytest.raises(laminate.LaminateError) as info:
        lam.fpf(np.zeros(8), criterion='Puck')
    assert info.value.code == ('LAMINATE', 'CRITERION', 'Puck')
    for kwargs, code in ((dict(plane=(1, 1)), ('LAMINATE', 'PLANE', 'INVALID')),
                         (dict(points=0), ('LAMINATE', 'OPTION', 'points'))):
        with pytest.raises(laminate.LaminateError) as info:
            lam.envelope(**kwargs)
        assert info.value.code == code
    with pytest.raises(laminate.LaminateError):
        lam.fpf(np.zeros(8), threads=0)


def test_library_errors(tmp_path):
    bad = tmp_path / 'bad.lam'
    bad.write_text('[A]\nE1 140000\nE2 9000\nnu12 0.3\nG12 -1\n')
    with pytest.raises(laminate.LibraryError) as info:
        laminate.load_library(bad)
    assert info.value.code[:3] == ('LAMINATE', 'LIBRARY', 'POSITIVE') and info.value.code[3] == '5'
    assert str(info.value).startswith(str(bad) + ', line 5: ')
    with pytest.raises(laminate.LibraryError) as info:
        laminate.load_library(tmp_path / 'missing.lam')
    assert info.value.code == ('LAMINATE', 'LIBRARY', 'OPEN', '0', '')
