#!/usr/bin/python3
"""First-ply failure throughput of the Python module: Laminate.fpf over a
1,000,000 x 8 NumPy array, Tsai-Wu, 8 plies, on 1 and 2 threads; then the
Dask example on a local cluster of 2 worker processes (when dask and
distributed are installed).

    PYTHONPATH=build-bench/python /usr/bin/python3 bench/python_fpf.py [ROWS]
"""

import os
import sys
import time

import numpy as np

import laminate

HERE = os.path.dirname(os.path.abspath(__file__))


def best_of(fn, repeat=3):
    best = float('inf')
    for _ in range(repeat):
        start = time.perf_counter()
        fn()
        best = min(best, time.perf_counter() - start)
    return best


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1000000
    material = laminate.Material('ply', E1=135000, E2=10000, nu12=0.3, G12=5000,
                                 Xt=1500, Xc=1200, Yt=50, Yc=250, S12=70)
    lam = laminate.Laminate.from_layup('[0/45/-45/90]s', material=material, thickness=0.125)
    assert lam.layers == 8
    cases = np.random.default_rng(1).normal(0.0, 100.0, (rows, 8))
    one = lam.fpf(cases, threads=1)
    rates = {}
    for threads in (1, 2):
        seconds = best_of(lambda: lam.fpf(cases, criterion='tsaiwu', threads=threads))
        assert lam.fpf(cases, threads=threads).tobytes() == one.tobytes()
        rates[threads] = rows / seconds
        print('fpf tsaiwu, 8 plies, %d x 8, threads=%d: %.3f s, %.0f cases/s'
              % (rows, threads, seconds, rates[threads]))
    print('speed-up with 2 threads: %.2f' % (rates[2] / rates[1]))
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
        seconds = best_of(rated.compute)
        print('dask example, LocalCluster of 2 processes x 1 thread, %d cases in chunks of 100000: '
              '%.3f s, %.0f cases/s' % (rows, seconds, rows / seconds))
    return 0


if __name__ == '__main__':
    sys.exit(main())
