"""The demo's channel step: `orvmesh channels`, `map nodes` and `map result`, each against numpy."""
import json
import os
import re
import subprocess

import numpy as np

import read_ofe

WALLS, ENDS = 3, 4
KINDS = {1: "coolant", 2: "heater"}
TYPES = {"Int32": "<i4", "UInt8": "u1", "Int64": "<i8", "Float32": "<f4", "Float64": "<f8"}


def read_vtu(path):
    """Arrays of a VTU file with raw appended data, by name."""
    with open(path, "rb") as file:
        head, body = file.read().split(b'<AppendedData encoding="raw">\n_', 1)
    arrays = {}
    for kind, name, components, offset in re.findall(
            r'<DataArray type="(\w+)" Name="(\w+)" NumberOfComponents="(\d+)" format="appended" offset="(\d+)"', head.decode()):
        size = int(np.frombuffer(body, "<u8", 1, int(offset))[0])
        values = np.frombuffer(body, TYPES[kind], size // np.dtype(TYPES[kind]).itemsize, int(offset) + 8)
        arrays[name] = values.reshape(-1, int(components)) if int(components) > 1 else values
    return arrays


def nearest(points, queries):
    """Place (the lowest of several) and distance of the nearest point of each query, by trying them all."""
    places, distances = np.zeros(len(queries), int), np.zeros(len(queries))
    for i, query in enumerate(queries):
        squares = ((points - query) ** 2).sum(axis=1)
        places[i] = squares.argmin()
        distances[i] = np.sqrt(squares[places[i]])
    return places, distances


def summary(distances):
    rank = {name: np.sort(distances)[-(-len(distances) * percent // 100) - 1]
            for name, percent in (("median", 50), ("p99", 99))} if len(distances) else {"median": None, "p99": None}
    return {"count": len(distances), "minimum": distances.min(initial=np.inf), "maximum": distances.max(initial=0), **rank}


def close(found, wanted):
    return abs(found - wanted) <= 1e-5 * abs(wanted) + 1e-9


def compare_distances(what, found, distances):
    for name, wanted in summary(distances).items():
        if len(distances) and not close(found[name], wanted):
            yield f"{what}: {name} is {found[name]}, numpy finds {wanted}"
    worst = np.sort(distances)[::-1][:len(found["worst"])]
    if not all(close(far["distance"], wanted) for far, wanted in zip(found["worst"], worst)):
        yield f"{what}: the farthest nodes are {found['worst']}, numpy finds {worst}"


def run(orvmesh, *words):
    done = subprocess.run([orvmesh, *words, "--json"], stdout=subprocess.PIPE, check=True)
    return json.loads(done.stdout)


def coordinates(mesh):
    """Of the nodes in model units; entry 0 is unused."""
    factor = mesh["header"]["words"][29:30].view("<f4")[0] or 1
    xyz = mesh["nodes"]["xyz"].astype(float) * factor
    return np.vstack([np.zeros(3), xyz])


def nodes_in_use(*blocks):
    return np.unique(np.concatenate([block["connectivity"] for block in blocks if block]))


# Volume elements by their number of nodes, cut into tetrahedra; exact where faces are plane.
TETRAHEDRA = {4: [(0, 1, 2, 3)], 5: [(0, 1, 2, 4), (0, 2, 3, 4)], 6: [(0, 1, 2, 3), (1, 2, 3, 4), (2, 3, 4, 5)],
              8: [(0, 1, 3, 4), (1, 2, 3, 6), (1, 3, 4, 6), (1, 4, 5, 6), (3, 4, 6, 7)]}


def element_volumes(xyz, block):
    each = len(block["connectivity"]) // len(block["fieldA"])
    offsets = block["offsets"] if len(block["offsets"]) else np.arange(len(block["fieldA"]) + 1) * each
    volumes, counts = np.zeros(len(block["fieldA"])), np.diff(offsets)
    for count, cuts in TETRAHEDRA.items():
        which = np.nonzero(counts == count)[0]
        for cut in cuts:
            a, b, c, d = (xyz[block["connectivity"][offsets[which] + corner]] for corner in cut)
            volumes[which] += np.abs(np.einsum("ij,ij->i", np.cross(b - a, c - a), d - a)) / 6
    return volumes


def is_triangle(nodes):
    return (nodes[:, 3] == nodes[:, 2]) | (nodes[:, 3] == 0)


def area(xyz, nodes):
    a, b, c = (xyz[nodes[:, k]] for k in range(3))
    d = np.where(is_triangle(nodes)[:, None], c, xyz[nodes[:, 3]])
    return np.linalg.norm(np.cross(c - a, d - b), axis=1).sum() / 2


def open_edges(nodes):
    closed = np.where(is_triangle(nodes), nodes[:, 2], nodes[:, 3])
    edges = np.concatenate([nodes[:, [0, 1]], nodes[:, [1, 2]], np.stack([nodes[:, 2], closed], axis=1),
                            np.stack([closed, nodes[:, 0]], axis=1)])
    edges = np.sort(edges[edges[:, 0] != edges[:, 1]], axis=1)
    return int((np.unique(edges, axis=0, return_counts=True)[1] == 1).sum())


def check_groups(found, mesh, xyz):
    faces, channels = mesh["elementSurfaces"], mesh["elementsCoolChannel"]
    volumes = element_volumes(xyz, channels)
    wanted = set(zip(channels["fieldA"].tolist(), channels["fieldB"].tolist()))
    if len(found["groups"]) != len(wanted):
        yield f"channels: {len(found['groups'])} groups, the elements name {len(wanted)}"
    for group in found["groups"]:
        kind = next(k for k, name in KINDS.items() if name == group["kind"])
        mine = (faces["ownerCode"] == kind) & (faces["boundaryType"] == group["group"])
        walls = faces["nodes"][mine & (faces["interfaceId"] == WALLS)]
        surface = faces["nodes"][mine & np.isin(faces["interfaceId"], (WALLS, ENDS))]
        volume = volumes[(channels["fieldA"] == kind) & (channels["fieldB"] == group["group"])].sum()
        wetted = area(xyz, walls)
        for name, value in (("wettedArea", wetted), ("volume", volume), ("diameter", 4 * volume / wetted)):
            if not close(group[name], value):
                yield f"channels: {name} of {group['kind']} {group['group']} is {group[name]}, numpy finds {value}"
        if group["openEdges"] != open_edges(surface):
            yield f"channels: {group['openEdges']} open edges of {group['kind']} {group['group']}, numpy finds {open_edges(surface)}"


def check_surface(drawn, mesh, xyz):
    faces = mesh["elementSurfaces"]
    kept = np.isin(faces["interfaceId"], (WALLS, ENDS))
    shape = faces["nodes"][kept]
    corners = shape[np.stack([np.full(len(shape), True)] * 3 + [~is_triangle(shape)], axis=1)]
    nodes = np.unique(corners)
    if not np.array_equal(drawn["node"], nodes) or not np.allclose(drawn["Points"], xyz[nodes]):
        yield "channels: the drawing has other nodes than the faces"
    if not np.array_equal(nodes[drawn["connectivity"]], corners):
        yield "channels: the drawing has other faces than the mesh"
    if not np.array_equal(drawn["group"], faces["boundaryType"][kept]):
        yield "channels: the drawing has other groups than the mesh"


def check_node_map(found, mesh, xyz):
    faces = mesh["elementSurfaces"]
    surface = np.unique(faces["nodes"][np.isin(faces["interfaceId"], (WALLS, ENDS))])
    own = np.unique(faces["nodes"][(faces["interfaceId"] == WALLS) & (faces["contactCode"] != 0)])
    searched = np.setdiff1d(surface, own)
    counts = {"nodes": len(surface), "selfMapped": len(own), "searched": len(searched), "notFound": 0}
    for name, wanted in counts.items():
        if found[name] != wanted:
            yield f"map nodes: {name} is {found[name]}, numpy finds {wanted}"
    _, distances = nearest(xyz[nodes_in_use(mesh["elementsMoldBase"])], xyz[searched])
    yield from compare_distances("map nodes", found["distances"], distances)


def write_points(path, xyz):
    """A warm spot in a grid of points over the mesh's box, as another program would write it."""
    low, high = xyz[1:].min(axis=0), xyz[1:].max(axis=0)
    axes = [np.linspace(a, b, 9) for a, b in zip(low, high)]
    points = np.stack(np.meshgrid(*axes, indexing="ij"), axis=-1).reshape(-1, 3)
    values = 25 + 40 * np.exp(-(((points - (low + high) / 2) / (high - low)) ** 2).sum(axis=1) * 8)
    with open(path, "w") as out:
        out.write("% x, y, z (mm), T (degC)\n")
        out.writelines(f"{x:.17g}, {y:.17g}, {z:.17g}\t{v:.17g}\n" for (x, y, z), v in zip(points, values))
    return points, values


def check_result(found, written, points, values, mesh, xyz):
    used = nodes_in_use(*(mesh[name] for name in ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")))
    places, distances = nearest(points, xyz[used])
    wanted = np.full(len(xyz) - 1, np.nan)
    wanted[used - 1] = values[places]
    if not np.array_equal(written["result"], wanted, equal_nan=True):
        yield "map result: the nodes have other values than those of the nearest points"
    if found["nodes"] != len(used):
        yield f"map result: {found['nodes']} nodes, the elements use {len(used)}"
    yield from compare_distances("map result", found["distances"], distances)


def show_channels(orvmesh, component, folder):
    """Runs the three commands on the mesh `component` and prints what they tell; yields what
    differs from numpy."""
    mesh = read_ofe.read(component)
    xyz = coordinates(mesh)
    drawing, table, result = (os.path.join(folder, name) for name in ("channels.vtu", "temperature.txt", "temperature.vtu"))
    print(subprocess.run([orvmesh, "channels", component], stdout=subprocess.PIPE, text=True, check=True).stdout)
    yield from check_groups(run(orvmesh, "channels", component, "-o", drawing), mesh, xyz)
    yield from check_surface(read_vtu(drawing), mesh, xyz)
    yield from check_node_map(run(orvmesh, "map", "nodes", component), mesh, xyz)
    points, values = write_points(table, xyz)
    found = run(orvmesh, "map", "result", component, table, "-o", result)
    yield from check_result(found, read_vtu(result), points, values, mesh, xyz)
    print(f"{found['points']} values mapped onto {found['nodes']} nodes, at most {found['distances']['maximum']:.3g} away\n")
