#!/usr/bin/python3
"""First-ply failure throughput of the Python module: Laminate.fpf over a
1,000,000 x 8 NumPy array, Tsai-Wu, 8 plies, on 1 and 2 threads, and the
catalogue's tsaiwu2d with a temperature change held; then the Dask example
on a local cluster of 2 worker processes (when dask and distributed are
installed).  Every figure is the best of 3 runs, with the slowest run's
figure beside it (the spread on a shared machine).

    PYTHONPATH=build-bench/python /usr/bin/python3 bench/python_fpf.py [ROWS]
"""

import os
import sys
import time

import numpy as np

import laminate

HERE = os.path.dirname(os.path.abspath(__file__))


def timed(fn, repeat=3):
    """The run times of fn, fastest first."""
    times = []
    for _ in range(repeat):
        start = time.perf_counter()
        fn()
        times.append(time.perf_counter() - start)
    return sorted(times)


def show(what, rows, times):
    rates = [rows / t for t in times]
    print('%s: %.3f s, %.0f cases/s (3 runs: %s cases/s)'
          % (what, times[0], rates[0], ' '.join('%.0f' % r for r in rates)))
    return rates[0]


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1000000
    material = laminate.Material('ply', E1=135000, E2=10000, nu12=0.3, G12=5000,
                                 Xt=1500, Xc=1200, Yt=50, Yc=250, S12=70, alpha1=-0.5e-6, alpha2=3e-5)
    lam = laminate.Laminate.from_layup('[0/45/-45/90]s', material=material, thickness=0.125)
    assert lam.layers == 8
    cases = np.random.default_rng(1).normal(0.0, 100.0, (rows, 8))
    one = lam.fpf(cases, threads=1)
    rates = {}
    for threads in (1, 2):
        times = timed(lambda: lam.fpf(cases, criterion='tsaiwu', threads=threads))
        assert lam.fpf(cases, threads=threads).tobytes() == one.tobytes()
        rates[threads] = show('fpf tsaiwu, 8 plies, %d x 8, threads=%d' % (rows, threads), rows, times)
    print('speed-up with 2 threads: %.2f' % (rates[2] / rates[1]))
    for threads in (1, 2):
        times = timed(lambda: lam.fpf(cases, criterion='tsaiwu2d', dT=-100.0, threads=threads))
        show('fpf tsaiwu2d dT=-100, 8 plies, %d x 8, threads=%d' % (rows, threads), rows, times)
    try:
        from dask.distributed import Client
    except ImportError:
        print('dask example: skipped (python3-dask, python3-distributed missing)')
        return 0
    sys.path.insert(0, os.path.join(HERE, '..', 'examples', 'python'))
    os.environ['PYTHONPATH'] = os.pathsep.join([sys.path[0], os.environ.get('PYTHONPATH', '')])
    import dask_fpf
    with dask_fpf.local_cluster(2) as cluster, Client(cluster):
        dask_fpf.rate(cases[:1000], dask_fpf.LAYUP, dask_fpf.MATERIAL, dask_fpf.THICKNESS).compute()
        rated = dask_fpf.rate(cases, dask_fpf.LAYUP, dask_fpf.MATERIAL, dask_fpf.THICKNESS,
                              chunk_rows=100000)
        show('dask example, LocalCluster of 2 processes x 1 thread, %d cases in chunks of 100000' % rows,
             rows, timed(rated.compute))
    return 0


if __name__ == '__main__':
    sys.exit(main())
