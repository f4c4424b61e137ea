"""The demo's finite-volume step: the CTG mesh as an OFV file and as polyhedra, counted a second time."""
import json
import os
import re
import subprocess

import numpy as np

import demo_channels
import read_ofe

POINTS, CAVITIES, CELLS, FACES, INLETS = 5200, 5300, 5400, 5500, 5600


def ctg_section(path, name):
    """The numbers behind the equals signs of a section, short lines filled up with zeros."""
    with open(path) as text:
        body = text.read().split(f"[{name}]\n")[1].split(f"[/{name}]")[0]
    rows = [line.split("=")[1].split() for line in body.splitlines()]
    width = max(map(len, rows), default=2)
    return np.array([row + ["0"] * (width - len(row)) for row in rows], dtype=float).reshape(-1, width)


def expected_counts(ctg):
    """What the OFV file must count, from the text of the CTG file alone."""
    entries = ctg_section(ctg, "Element Face")[:, 1:].astype(np.int64)
    properties, cells = np.unique(ctg_section(ctg, "Element Property")[:, 0].astype(int), return_counts=True)
    groups = np.unique(ctg_section(ctg, "Cool Boundary Face")[:, 1].astype(int))
    return {"points": len(ctg_section(ctg, "Node")), "cells": len(entries), "faces": int((entries > 0).sum()),
            "interior": int((entries < 0).sum()), "cavities": dict(zip(properties.tolist(), cells.tolist())),
            "groups": groups[(1 <= groups) & (groups <= 1000)].tolist()}


def counts_in_file(blocks):
    columns = {block: [values for _, values in columns] for block, columns in blocks.items()}
    cavity_of_cell = columns[CELLS][0]
    number = columns[CAVITIES][0]
    return {"points": len(columns[POINTS][0]) // 3, "cells": len(cavity_of_cell), "faces": len(columns[FACES][2]),
            "interior": int((columns[FACES][3] != 0).sum()),
            "cavities": {int(n): int((cavity_of_cell == i + 1).sum()) for i, n in enumerate(number)},
            "groups": columns[INLETS][1].tolist()}


def largest_rest(blocks):
    """The largest sum of a cell's outward area vectors, as a share of the largest face of all."""
    xyz = blocks[POINTS][0][1].reshape(-1, 3)
    offsets, nodes, owner, neighbour = (values for _, values in blocks[FACES])
    face = np.repeat(np.arange(len(owner)), np.diff(offsets))
    following = np.arange(1, len(nodes) + 1)
    following[offsets[1:] - 1] = offsets[:-1]
    start = xyz[nodes[offsets[:-1]] - 1][face]
    twice = np.zeros((len(owner), 3))
    np.add.at(twice, face, np.cross(xyz[nodes - 1] - start, xyz[nodes[following] - 1] - start))
    rest = np.zeros((len(blocks[CELLS][0][1]) + 1, 3))
    np.add.at(rest, owner, twice)
    np.subtract.at(rest, neighbour, twice)
    return np.linalg.norm(rest[1:], axis=1).max() / np.linalg.norm(twice, axis=1).max()


def map_points(orvmesh, component, ofv, points, folder):
    """A made-up result on the points of the OFV file, mapped onto the component mesh; yields what is wrong."""
    values, vtu = os.path.join(folder, "ofv_values.txt"), os.path.join(folder, "mold_from_ofv.vtu")
    np.savetxt(values, np.arange(len(points)), "%d")
    done = subprocess.run([orvmesh, "map", "result", component, ofv, "--values", values, "-o", vtu], stdout=subprocess.DEVNULL)
    if done.returncode != 0:
        yield f"orvmesh map result: exit code {done.returncode}"
        return
    arrays = demo_channels.read_vtu(vtu)
    used = np.flatnonzero(~np.isnan(arrays["result"]))[::7]
    queries = arrays["Points"][used].astype(float)
    places, distances = demo_channels.nearest(points, queries)
    found = arrays["result"][used].astype(int)
    # Equally near but for the digits of a CTG file.
    told = np.linalg.norm(points[found] - queries, axis=1)
    wrong = np.count_nonzero((found != places) & (told > distances + 1e-6))
    if wrong:
        yield f"{vtu}: {wrong} of {len(used)} nodes have the value of a point that is not the nearest"


def make_ofv(orvmesh, component, ctg, folder):
    """Writes mold.ofv and its polyhedra into the folder and maps its points; yields what is wrong."""
    ofv, vtu = os.path.join(folder, "mold.ofv"), os.path.join(folder, "mold_ofv.vtu")
    for words in (["ofv", ctg, ofv], ["export", ofv, vtu], ["info", "--json", ofv]):
        done = subprocess.run([orvmesh, *words], stdout=subprocess.PIPE, text=True)
        if done.returncode != 0:
            yield f"orvmesh {' '.join(words)}: exit code {done.returncode}"
            return
    told = json.loads(done.stdout)
    wanted, blocks = expected_counts(ctg), read_ofe.read_blocks(ofv)
    found = counts_in_file(blocks)
    print(f"OFV file: {told['cells']} cells in {len(told['cavities'])} cavities, {told['faces']['all']} faces, "
          f"{told['points']} points, channel groups of inlets {[i['channelGroup'] for i in told['inlets']]}\n")
    for name in wanted:
        if found[name] != wanted[name]:
            yield f"{ofv}: {name} {found[name]}, the CTG file has {wanted[name]}"
    if (told["cells"], told["faces"]["interior"]) != (wanted["cells"], wanted["interior"]):
        yield f"{ofv}: orvmesh info counts otherwise"
    if largest_rest(blocks) > 1e-9:
        yield f"{ofv}: a cell is not closed"
    with open(vtu, "rb") as file:
        head = file.read(400).decode("ascii", "replace")
    piece = re.search(r'NumberOfPoints="(\d+)" NumberOfCells="(\d+)"', head)
    if not piece or [int(n) for n in piece.groups()] != [wanted["points"], wanted["cells"]]:
        yield f"{vtu}: other counts of points and cells"
    yield from map_points(orvmesh, component, ofv, blocks[POINTS][0][1].reshape(-1, 3), folder)
