#!/usr/bin/python3
"""Opening a mesh in Python: ./run python bench/open_in_python.py MESH.ofe [ROUNDS]

Prints the time of orvmesh.read() and of a plain numpy.fromfile of the same bytes, best of the rounds, and by how much the
process's own memory (not that of the mapped file) grows while the mesh is open.
"""
import os
import sys
import time

import numpy as np

import orvmesh


def own_memory():
    with open("/proc/self/status") as file:
        return next(int(line.split()[1]) * 1024 for line in file if line.startswith("RssAnon"))


def timed(job, rounds):
    best = float("inf")
    for _ in range(rounds):
        start = time.perf_counter()
        job()
        best = min(best, time.perf_counter() - start)
    return best


path, rounds = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 5
orvmesh.read(path)
before = own_memory()
mesh = orvmesh.read(path)
grown = own_memory() - before
elements = mesh.plastic.size + mesh.mold.size + mesh.channel.size
seconds = timed(lambda: orvmesh.read(path), rounds)
peer = timed(lambda: np.fromfile(path, np.uint8), rounds)
size = os.path.getsize(path)
print(f"{elements} elements, {size / 1e6:.0f} MB: read {seconds:.3f} s, fromfile {peer:.3f} s, ratio {seconds / peer:.2f}; "
      f"own memory +{grown / 1e6:.1f} MB ({grown / size:.3f} of the file)")
