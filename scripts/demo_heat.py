"""The demo's heat-source step: maps a COMSOL table onto the mold and compares every node with a search by brute force."""
import json
import os
import subprocess

import numpy as np

import read_ofe

SCALE = 0.1  # the mold is in mm, heat sources are mapped in cm
TURNED_LOSS = -0.0001 * 10000000


def read_table(path):
    """Points in cm and losses in W/m2."""
    with open(path) as text:
        rows = [line.split()[:4] for line in text if not line.startswith("%")]
    table = np.array(rows, float)
    return table[:, :3] * 100, table[:, 3]


def nearest(points, nodes):
    """Of each node: the nearest point, the first of equally near ones, and how far it is."""
    found = np.empty(len(nodes), int)
    for piece in range(0, len(nodes), 1000):
        squares = ((nodes[piece:piece + 1000, None] - points[None]) ** 2).sum(axis=2)
        found[piece:piece + 1000] = squares.argmin(axis=1)
    return found, np.sqrt(((nodes - points[found]) ** 2).sum(axis=1))


def point_array(path, name):
    """A Float64 point array of a VTU file that orvmesh has written."""
    with open(path, "rb") as file:
        content = file.read()
    head, data = content.split(b'<AppendedData encoding="raw">\n_', 1)
    line = next(line for line in head.split(b"\n") if b'Name="' + name.encode() + b'"' in line)
    offset = int(line.split(b'offset="')[1].split(b'"')[0])
    size = int(np.frombuffer(data, "<u8", 1, offset)[0])
    return np.frombuffer(data, "<f8", size // 8, offset + 8)


def map_losses(orvmesh, mold, table, folder):
    """Imports `mold` (its import words) in cm, maps the table onto it and prints what the command tells; yields what
    differs from the brute force."""
    mesh, target = os.path.join(folder, "mold-cm.ofe"), os.path.join(folder, "heat.vtu")
    subprocess.run([orvmesh, "import", "--quiet", "--scale", str(SCALE), *mold, mesh], check=True)
    words = [orvmesh, "heat", table, mesh, "-o", target, "--start", "0", "--end", "12.5"]
    done = subprocess.run(words, stdout=subprocess.PIPE, text=True)
    told = subprocess.run([*words, "--json"], stdout=subprocess.PIPE, text=True)
    if done.returncode != 0 or told.returncode != 0:
        yield f"{table}: not mapped"
        return
    print(done.stdout)
    points, losses = read_table(table)
    nodes = read_ofe.read(mesh)["nodes"]["xyz"].astype(float) * np.float64(np.float32(SCALE))
    number, distance = nearest(points, nodes)
    wanted = {"heatSource": losses[number] * TURNED_LOSS, "loss": losses[number] * 1e-4, "distance": distance}
    for name, values in wanted.items():
        found = point_array(target, name)
        if not np.allclose(found, values, rtol=1e-12, atol=1e-12):
            yield f"{target}: {name} differs from the nearest points by brute force"
    figures = json.loads(told.stdout)
    for name, found, value in [
            ("mean loss of the points", figures["pointValues"]["mean"], losses.mean() * 1e-4),
            ("sum over the nodes", figures["nodeValues"]["sum"], losses[number].sum() * 1e-4),
            ("median distance", figures["distances"]["median"], np.sort(distance)[(len(distance) + 1) // 2 - 1]),
            ("largest distance", figures["distances"]["maximum"], distance.max())]:
        if not np.isclose(found, value, rtol=1e-9):
            yield f"{table}: {name} is {found}, it should be {value}"
    if figures["warnings"]:
        yield f"{table}: {figures['warnings']}"
