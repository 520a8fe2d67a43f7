#!/usr/bin/python3
"""Rate a large table of load cases with Dask: first-ply failure of every
row of an (n, 8) array, the rows partitioned into chunks that Dask's
workers rate in parallel, on one machine or many.

Each worker process prepares the laminate once (on its first chunk) and
keeps it; a chunk is a NumPy block that goes through Laminate.fpf whole.
The answer is a Dask array of the structured dtype laminate.FPF_DTYPE, or
a Dask dataframe of it (with pandas), its coded fields as categoricals of
their words.

    python3 dask_fpf.py [CASES]                 # a LocalCluster of 2 processes
    python3 dask_fpf.py --criterion puck --dT -100 [CASES]
    python3 dask_fpf.py --scheduler tcp://host:8786 [CASES]

On a cluster of several machines, start "dask scheduler" on one and
"dask worker tcp://host:8786" on each (every one with the laminate module
installed), then pass the scheduler's address: the code is the same.
"""

import argparse
import functools
import sys
import time

import numpy as np

import laminate


@functools.lru_cache(maxsize=8)
def prepared(layup, material_items, thickness):
    """The laminate, made once per worker process (the cache is per process)."""
    material = laminate.Material('ply', dict(material_items))
    return laminate.Laminate.from_layup(layup, material=material, thickness=thickness)


def rate_block(block, layup, material_items, thickness, criterion, dT, dM, fos):
    """One chunk of cases through fpf on this worker's laminate."""
    return prepared(layup, material_items, thickness).fpf(block, criterion=criterion, dT=dT, dM=dM, fos=fos)


def rate(cases, layup, material, thickness=None, criterion='tsaiwu', chunk_rows=25000, dT=0.0, dM=0.0,
         fos=1.0):
    """First-ply failure of every row of cases, as a lazy Dask array.

    Parameters
    ----------
    cases : ndarray or dask.array.Array, shape (n, 8)
    layup : str
        Stacking sequence, e.g. ``'[0/±45/90]s'``.
    material : dict
        The ply material's properties (what laminate.Material takes).
    thickness : float, optional
    criterion : str
        One of laminate.CRITERIA.
    chunk_rows : int
        Rows per chunk: the unit of work a worker takes.
    dT, dM, fos : float
        As Laminate.fpf takes them (dT, dM with the catalogue's criteria).

    Returns
    -------
    dask.array.Array
        Shape (n,), dtype laminate.FPF_DTYPE; ``.compute()`` gives the
        NumPy array Laminate.fpf would give for the whole table.
    """
    import dask.array as da
    arr = cases if isinstance(cases, da.Array) else da.from_array(np.asarray(cases, dtype=float),
                                                                    chunks=(chunk_rows, 8))
    arr = arr.rechunk((chunk_rows, 8))
    items = tuple(material.items())
    return arr.map_blocks(rate_block, layup, items, thickness, criterion, dT, dM, fos, drop_axis=1,
                          dtype=laminate.FPF_DTYPE, meta=np.empty((0,), laminate.FPF_DTYPE))


def as_dataframe(rated, criterion='tsaiwu'):
    """The rated cases as a Dask dataframe: one partition per chunk, the
    columns of laminate.FPF_DTYPE, face, mode, outcome and verdict as
    categoricals of their words (laminate.to_dataframe on each chunk, on
    the workers).  Needs pandas (Debian package python3-pandas).  The index
    counts the rows from 0 over the whole table."""
    import dask
    import dask.dataframe as dd
    meta = laminate.to_dataframe(np.empty((0,), laminate.FPF_DTYPE), criterion)
    starts = np.concatenate([[0], np.cumsum(rated.chunks[0])])
    parts = [dask.delayed(_frame)(block, criterion, int(first))
             for block, first in zip(rated.to_delayed().ravel(), starts[:-1])]
    return dd.from_delayed(parts, meta=meta, divisions=tuple(int(s) for s in starts[:-1]) + (int(starts[-1]) - 1,))


def _frame(block, criterion, first):
    frame = laminate.to_dataframe(block, criterion)
    frame.index += first
    return frame


MATERIAL = dict(E1=135000, E2=10000, nu12=0.3, G12=5000, Xt=1500, Xc=1200, Yt=50, Yc=250, S12=70,
                alpha1=-0.5e-6, alpha2=3e-5, fibre='carbon')
LAYUP = '[0/45/-45/90]s'
THICKNESS = 0.125


def example_cases(n, seed=1):
    rng = np.random.default_rng(seed)
    return rng.normal(0.0, 100.0, (n, 8))


def local_cluster(workers=2):
    """A cluster of worker processes on the loopback interface only."""
    from dask.distributed import LocalCluster
    return LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                        host='127.0.0.1', dashboard_address=None)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('cases', nargs='?', type=int, default=1000000)
    parser.add_argument('--scheduler', help='address of a running Dask scheduler')
    parser.add_argument('--chunk-rows', type=int, default=100000)
    parser.add_argument('--criterion', default='tsaiwu', choices=laminate.CRITERIA)
    parser.add_argument('--dT', type=float, default=0.0, help='temperature change (catalogue criteria)')
    args = parser.parse_args(argv)
    from dask.distributed import Client
    cluster = None if args.scheduler else local_cluster()
    with Client(args.scheduler or cluster) as client:
        cases = example_cases(args.cases)
        rated = rate(cases, LAYUP, MATERIAL, THICKNESS, criterion=args.criterion, chunk_rows=args.chunk_rows,
                     dT=args.dT)
        client.compute(rate(cases[:1000], LAYUP, MATERIAL, THICKNESS)).result()  # workers warm
        start = time.perf_counter()
        result = rated.compute()
        seconds = time.perf_counter() - start
        print('%d cases on %d workers in %.3f s: %.0f cases/s; lowest factor %.6g'
              % (len(result), len(client.scheduler_info()['workers']), seconds,
                 len(result) / seconds, result['factor'].min()))
    if cluster is not None:
        cluster.close()
    return 0


if __name__ == '__main__':
    sys.exit(main())
