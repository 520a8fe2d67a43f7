"""Shared helpers: running Tcl scripts on the built library and comparing
the module's answers with the Tcl commands' to the bit."""

import math
import os
import struct
import subprocess

import numpy as np
import pytest


def tcl_split(text):
    """A Tcl list (braces and bare words, no backslashes) as nested Python
    lists: every braced element becomes a list of its own elements."""
    def parse(i):
        out = []
        while i < len(text):
            ch = text[i]
            if ch.isspace():
                i += 1
            elif ch == '{':
                inner, i = parse(i + 1)
                out.append(inner)
            elif ch == '}':
                return out, i + 1
            else:
                j = i
                while j < len(text) and not text[j].isspace() and text[j] not in '{}':
                    j += 1
                out.append(text[i:j])
                i = j
        return out, i
    return parse(0)[0]


def tcl_list(item):
    """A list element as a list: a bare word is a list of one word."""
    return item if isinstance(item, list) else [item]


def tcl_word(item):
    """A list element as a word (a braced group joined by single blanks)."""
    if isinstance(item, list):
        return ' '.join(tcl_word(x) for x in item)
    return item


def tcl_double(word):
    return {'Inf': math.inf, '-Inf': -math.inf, 'NaN': math.nan}.get(word) if word in ('Inf', '-Inf', 'NaN') \
        else float(word)


def same_bits(a, b):
    return struct.pack('<d', a) == struct.pack('<d', b) or (math.isnan(a) and math.isnan(b))


def assert_same(py, tcl, where='result'):
    """py (the module's answer) equals the Tcl value tcl to the bit."""
    if isinstance(py, dict):
        items = tcl_list(tcl)
        theirs = {tcl_word(items[i]): items[i + 1] for i in range(0, len(items), 2)}
        assert set(theirs) <= set(py), '%s: keys %s not in %s' % (where, set(theirs) - set(py), set(py))
        for k, v in theirs.items():
            assert_same(py[k], v, '%s[%r]' % (where, k))
    elif isinstance(py, (list, tuple, np.ndarray)) and np.ndim(py) > 0:
        items = tcl_list(tcl)
        assert len(items) == len(py), '%s: %d items, Tcl %d' % (where, len(py), len(items))
        for i, (a, b) in enumerate(zip(py, items)):
            assert_same(a, b, '%s[%d]' % (where, i))
    elif isinstance(py, (float, np.floating)):
        b = tcl_double(tcl_word(tcl))
        assert same_bits(float(py), b), '%s: %r != Tcl %r' % (where, float(py), b)
    elif isinstance(py, (int, np.integer)):
        assert int(py) == int(tcl_word(tcl)), where
    else:
        assert str(py) == tcl_word(tcl), '%s: %r != Tcl %r' % (where, py, tcl)


def failure_words(row, criterion):
    """A first-ply failure as a dict of words: a row of the structured array
    (its coded fields through the module's word tables) or a dict of rate."""
    import laminate
    if isinstance(row, dict):
        return row
    d = {k: row[k].item() for k in ('factor', 'mos', 'ply')}
    for field in ('face', 'mode', 'outcome', 'verdict'):
        d[field] = str(laminate.words(row, field, criterion))
    return d


UNRATED = ('nostrength', 'nodata', 'nonfinite', 'badparameter')


def assert_failure(row, tcl, where='fpf', criterion='tsaiwu'):
    """One first-ply failure (a row of the structured array or a dict)
    against the Tcl dict {factor ply face mode ?verdict? ?mos?}.  The model's
    words undefined and overflow of the Tcl factor are the outcome here, with
    factor and mos inf; a catalogue verdict word in the factor is factor 0
    and outcome undefined here."""
    items = tcl_list(tcl)
    theirs = {tcl_word(items[i]): tcl_word(items[i + 1]) for i in range(0, len(items), 2)}
    mine = failure_words(row, criterion)
    factor, outcome = float(mine['factor']), mine['outcome']
    if theirs['factor'] in ('undefined', 'overflow'):
        assert outcome == theirs['factor'] and factor == math.inf, where
    elif theirs['factor'] in UNRATED:
        assert outcome == 'undefined' and factor == 0.0 and mine['verdict'] == theirs['factor'], where
    else:
        assert same_bits(factor, tcl_double(theirs['factor'])), '%s: %r != Tcl %s' % (where, factor, theirs['factor'])
        assert outcome == ('fails' if factor < math.inf else 'never'), where
    assert mine['verdict'] == theirs.get('verdict', 'none'), where
    if 'mos' in theirs and theirs['mos'] not in ('undefined', 'overflow') + UNRATED:
        assert same_bits(float(mine['mos']), tcl_double(theirs['mos'])), '%s: mos %r != Tcl %s' % (
            where, mine['mos'], theirs['mos'])
    assert int(mine['ply']) == int(theirs['ply']), where
    assert (mine['face'], mine['mode']) == (theirs['face'], theirs['mode']), where


@pytest.fixture(scope='session')
def tcl():
    """Runs a Tcl script with laminate::analysis loaded from the build;
    returns its output lines, each parsed as a Tcl list."""
    tclsh = os.environ.get('LAMINATE_TCLSH', 'tclsh')
    libpath = os.environ.get('LAMINATE_TCLLIBPATH')
    if not libpath:
        pytest.skip('LAMINATE_TCLLIBPATH (the build folder of the library) not set: run through ctest')

    def run(script):
        env = dict(os.environ, TCLLIBPATH=libpath)
        full = 'package require laminate::analysis\n' + script
        done = subprocess.run([tclsh], input=full, capture_output=True, text=True, env=env, check=False)
        assert done.returncode == 0, done.stderr
        return [tcl_split(line) for line in done.stdout.splitlines()]
    return run


def tcl_quote(text):
    """text as one braced Tcl word (no braces or backslashes in it)."""
    assert not set(text) & set('{}\\'), text
    return '{' + text + '}'
