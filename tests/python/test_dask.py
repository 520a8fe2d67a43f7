"""The Dask example on a local cluster of 2 worker processes gives the
answers of one process, as an array and as a dataframe."""

import os
import sys

import numpy as np
import pytest

import laminate

dask = pytest.importorskip('dask', reason='dask missing (Debian package python3-dask)')
distributed = pytest.importorskip('dask.distributed',
                                  reason='distributed missing (Debian package python3-distributed)')

EXAMPLES = os.environ.get('LAMINATE_EXAMPLES') or os.path.join(
    os.path.dirname(__file__), '..', '..', 'examples', 'python')
sys.path.insert(0, EXAMPLES)
# The worker processes import the example module by name.
os.environ['PYTHONPATH'] = os.pathsep.join([EXAMPLES, os.environ.get('PYTHONPATH', '')])
import dask_fpf  # noqa: E402

RUNS = [('tsaiwu', 0.0), ('hashin', 0.0), ('puck', -100.0)]


@pytest.fixture(scope='module')
def client():
    with dask_fpf.local_cluster(2) as cluster, distributed.Client(cluster) as c:
        assert len(c.scheduler_info()['workers']) == 2
        yield c


@pytest.fixture(scope='module')
def table():
    cases = dask_fpf.example_cases(100000, seed=5)
    cases[::997] = 0.0  # some cases that never fail
    lam = laminate.Laminate.from_layup(dask_fpf.LAYUP, material=laminate.Material('ply', dask_fpf.MATERIAL),
                                       thickness=dask_fpf.THICKNESS)
    return cases, {c: lam.fpf(cases, criterion=c, dT=dT, fos=1.5) for c, dT in RUNS}


def rated(cases, criterion, dT):
    return dask_fpf.rate(cases, dask_fpf.LAYUP, dask_fpf.MATERIAL, dask_fpf.THICKNESS, criterion=criterion,
                         chunk_rows=12500, dT=dT, fos=1.5)


def test_local_cluster_matches_one_process(client, table):
    cases, expected = table
    for criterion, dT in RUNS:
        r = rated(cases, criterion, dT)
        assert r.numblocks == (8,)
        result = r.compute()
        assert result.dtype == laminate.FPF_DTYPE and result.tobytes() == expected[criterion].tobytes()
        assert (laminate.words(result, 'outcome') == 'never').sum() == len(cases[::997])


def test_dataframe_matches_one_process(client, table):
    pytest.importorskip('pandas', reason='pandas missing (Debian package python3-pandas): no dataframe form')
    cases, expected = table
    for criterion, dT in RUNS:
        frame = dask_fpf.as_dataframe(rated(cases, criterion, dT), criterion)
        assert frame.npartitions == 8 and list(frame.columns) == list(laminate.FPF_DTYPE.names)
        got = frame.compute()
        want = laminate.to_dataframe(expected[criterion], criterion)
        assert got.equals(want), criterion
        assert np.array_equal(got['factor'].to_numpy(), expected[criterion]['factor'])
        assert set(got['verdict'].cat.categories) == set(laminate.VERDICTS)
        words = laminate.words(expected[criterion], 'mode', criterion)
        assert (got['mode'].astype(str).to_numpy() == words).all()
