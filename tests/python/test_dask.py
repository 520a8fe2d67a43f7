"""The Dask example on a local cluster of 2 worker processes gives the
answers of one process."""

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


def test_local_cluster_matches_one_process():
    sys.path.insert(0, EXAMPLES)
    # The worker processes import the example module by name.
    os.environ['PYTHONPATH'] = os.pathsep.join([EXAMPLES, os.environ.get('PYTHONPATH', '')])
    import dask_fpf

    cases = dask_fpf.example_cases(100000, seed=5)
    cases[::997] = 0.0  # some cases that never fail
    lam = laminate.Laminate.from_layup(dask_fpf.LAYUP, material=laminate.Material('ply', dask_fpf.MATERIAL),
                                       thickness=dask_fpf.THICKNESS)
    with dask_fpf.local_cluster(2) as cluster, distributed.Client(cluster) as client:
        assert len(client.scheduler_info()['workers']) == 2
        for criterion in ('tsaiwu', 'hashin'):
            rated = dask_fpf.rate(cases, dask_fpf.LAYUP, dask_fpf.MATERIAL, dask_fpf.THICKNESS,
                                  criterion=criterion, chunk_rows=12500)
            assert rated.numblocks == (8,)
            result = rated.compute()
            expected = lam.fpf(cases, criterion=criterion)
            assert result.dtype == laminate.FPF_DTYPE and result.tobytes() == expected.tobytes()
            assert (result['outcome'] == laminate.OUTCOMES.index('never')).sum() == len(cases[::997])
        try:
            import pandas  # noqa: F401  (dask.dataframe needs it: python3-pandas)
        except ImportError:
            return
        frame = dask_fpf.as_dataframe(rated).compute()
        assert np.array_equal(frame['factor'].to_numpy(), expected['factor'])
