#!/usr/bin/python3
"""Writes a small conforming mold of hexahedra, wedges, pyramids and tetrahedra with every role (needs only numpy).

The mold is a grid of cells. Each face between two cells is a quadrilateral or is split into two triangles, the
same way for both. A cell without a split face is a hexahedron; one with two opposite faces split alike is two
wedges; any other gets a node in its middle and is filled with pyramids and tetrahedra. Channels and heater (split
across) become wedges, the hot runner and one insert (all split) tetrahedra, the rest hexahedra, with pyramids
between them.

Volumes are exact: cells times the cube of --cell.
"""
import argparse
import itertools
import struct

import numpy as np

TETRAHEDRON, HEXAHEDRON, WEDGE, PYRAMID, TRIANGLE, QUADRILATERAL, POINT = 4, 5, 6, 7, 2, 3, 15
NODES = {TETRAHEDRON: 4, HEXAHEDRON: 8, WEDGE: 6, PYRAMID: 5, TRIANGLE: 3, QUADRILATERAL: 4, POINT: 1}

CELLS = (14, 10, 10)
# name -> (first cell, last cell) in x, y, z; later ones replace earlier ones
BOXES = {
    "moldbase": ((0, 13), (0, 9), (0, 9)),
    "part": ((3, 10), (3, 6), (4, 5)),
    "insert:5002": ((5, 8), (4, 5), (3, 4)),
    "insert:5003": ((4, 5), (7, 7), (4, 5)),
    "channel:1": ((0, 13), (2, 2), (2, 2)),
    "channel:2": ((0, 13), (7, 7), (2, 2)),
    "channel:3": ((2, 2), (0, 9), (6, 6)),
    "channel:4": ((11, 11), (0, 9), (6, 6)),
    "heater:1": ((0, 13), (8, 8), (8, 8)),
    "hotrunner:201": ((6, 6), (5, 5), (6, 9)),
    "hotrunner:202": ((8, 8), (4, 4), (6, 9)),
}
# split faces by the axis they are normal to
SPLIT = {"channel:1": (0,), "channel:2": (0,), "channel:3": (1,), "channel:4": (1,), "heater:1": (0,),
         "hotrunner:201": (0, 1, 2), "hotrunner:202": (0, 1, 2), "insert:5003": (0, 1, 2)}
# name -> axis, plane, cell ranges along the other two axes
SURFACES = {f"{end}:{g}": (axis, plane, *cells)
            for g, axis, cells in [(1, 0, ((2, 2), (2, 2))), (2, 0, ((7, 7), (2, 2))),
                                   (3, 1, ((2, 2), (6, 6))), (4, 1, ((11, 11), (6, 6)))]
            for end, plane in [("inlet", 0), ("outlet", CELLS[axis])]}
SURFACES |= {"gate:common:1": (2, 6, (6, 6), (5, 5)), "gate:hotcold:1": (2, 6, (8, 8), (4, 4))}
SENSORS = {"sensor:1:1": (4, 3, 5), "sensor:2:2": (9, 5, 5), "sensor:3:3": (7, 4, 6), "sensor:4:4": (6, 5, 4),
           "sensor:4:5": (1, 1, 5), "sensor:5:6": (12, 8, 5), "sensor:6:7": (1, 8, 1)}

# Corners of a cell as bits x, y, z, in the order of a hexahedron; its faces seen from outside, by axis and side.
CORNERS = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1)]


def square(axis, side):
    """Corners of a cell's face, turning about the axis from corner (0, 0)."""
    corners = []
    for u, v in ((0, 0), (1, 0), (1, 1), (0, 1)):
        corner = [0, 0, 0]
        corner[axis], corner[(axis + 1) % 3], corner[(axis + 2) % 3] = side, u, v
        corners.append(tuple(corner))
    return corners


class Grid:
    def __init__(self, factor):
        self.factor = factor
        self.cells = tuple(n * factor for n in CELLS)
        self.names = list(BOXES)
        self.role = np.zeros(self.cells, int)
        for index, box in enumerate(BOXES.values()):
            self.role[tuple(slice(a * factor, (b + 1) * factor) for a, b in box)] = index
        self.split = [self.split_faces(axis) for axis in range(3)]

    def split_faces(self, axis):
        """One flag per grid face normal to the axis: a face is split when a cell beside it asks for it."""
        asks = np.array([axis in SPLIT.get(name, ()) for name in self.names])[self.role]
        before = np.concatenate([asks, np.zeros_like(asks.take([0], axis))], axis)
        return before | np.roll(before, 1, axis)

    def node(self, x, y, z):
        return 1 + x + (self.cells[0] + 1) * (y + (self.cells[1] + 1) * z)

    def corner_nodes(self, cell, corners):
        return [self.node(*(c + d for c, d in zip(cell, corner))) for corner in corners]

    def is_split(self, cell, axis, side):
        face = list(cell)
        face[axis] += side
        return bool(self.split[axis][tuple(face)])


def triangles(a, b, c, d):
    """The one diagonal that both neighbours of a face use starts at its corner (0, 0)."""
    return [(a, b, c), (a, c, d)]


class Mesh:
    def __init__(self):
        self.elements = {}  # (dimension, name, type) -> node lists
        self.middles = []

    def add(self, dimension, name, kind, nodes):
        self.elements.setdefault((dimension, name, kind), []).append(nodes)


def add_cell(mesh, grid, cell):
    name = grid.names[grid.role[cell]]
    split = {(axis, side) for axis in range(3) for side in (0, 1) if grid.is_split(cell, axis, side)}
    opposite = [axis for axis in range(3) if split == {(axis, 0), (axis, 1)}]
    if not split:
        mesh.add(3, name, HEXAHEDRON, grid.corner_nodes(cell, CORNERS))
    elif opposite:
        near, far = (grid.corner_nodes(cell, square(opposite[0], side)) for side in (0, 1))
        for low, high in zip(triangles(*near), triangles(*far)):
            mesh.add(3, name, WEDGE, [*low, *high])
    else:
        add_around_middle(mesh, grid, cell, name, split)


def add_around_middle(mesh, grid, cell, name, split):
    middle = grid.node(0, 0, grid.cells[2] + 1) + len(mesh.middles)
    mesh.middles.append([c + 0.5 for c in cell])
    for axis, side in itertools.product(range(3), (0, 1)):
        nodes = grid.corner_nodes(cell, square(axis, side))
        if (axis, side) in split:
            for a, b, c in triangles(*nodes):
                mesh.add(3, name, TETRAHEDRON, [a, b, c, middle] if side == 0 else [a, c, b, middle])
        else:
            mesh.add(3, name, PYRAMID, [*(nodes if side == 0 else nodes[::-1]), middle])


def add_surface(mesh, grid, name, axis, plane, *ranges):
    factor = grid.factor
    (u0, u1), (v0, v1) = ((a * factor, (b + 1) * factor) for a, b in ranges)
    others = [a for a in range(3) if a != axis]
    for u, v in itertools.product(range(u0, u1), range(v0, v1)):
        cell = [0, 0, 0]
        cell[axis], cell[others[0]], cell[others[1]] = plane * factor, u, v
        nodes = grid.corner_nodes(cell, square(axis, 0))
        if grid.split[axis][tuple(cell)]:
            for triangle in triangles(*nodes):
                mesh.add(2, name, TRIANGLE, triangle)
        else:
            mesh.add(2, name, QUADRILATERAL, nodes)


def build(factor, cell_size):
    grid, mesh = Grid(factor), Mesh()
    for cell in np.ndindex(grid.cells):
        add_cell(mesh, grid, cell)
    for name, place in SURFACES.items():
        add_surface(mesh, grid, name, *place)
    for name, at in SENSORS.items():
        mesh.add(0, name, POINT, [grid.node(*(c * factor for c in at))])
    x, y, z = (np.arange(n + 1) for n in grid.cells)
    points = np.stack(np.meshgrid(z, y, x, indexing="ij")[::-1], -1).reshape(-1, 3)
    return np.concatenate([points, np.array(mesh.middles).reshape(-1, 3)]) * (cell_size / factor), mesh.elements


def packed_entities(groups, tag, points):
    box = struct.pack("<6d", *points.min(0), *points.max(0))
    parts = [struct.pack("<4Q", *(sum(d == dimension for d, _ in groups) for dimension in range(4)))]
    for dimension, name in groups:
        number = tag[dimension, name]
        parts.append(struct.pack("<i", number) + (box if dimension else box[:24]) + struct.pack("<Qi", 1, number))
        if dimension:
            parts.append(struct.pack("<Q", 0))
    return parts


def packed_nodes(points, entity):
    count = len(points)
    numbers = np.arange(1, count + 1, dtype="<u8")
    return [struct.pack("<4Q3iQ", 1, count, 1, count, 3, entity, 0, count), numbers.tobytes(),
            points.astype("<f8").tobytes()]


def packed_elements(elements, tag):
    total = sum(map(len, elements.values()))
    parts, number = [struct.pack("<4Q", len(elements), total, 1, total)], 1
    for (dimension, name, kind), lists in elements.items():
        parts.append(struct.pack("<3iQ", dimension, tag[dimension, name], kind, len(lists)))
        numbers = np.arange(number, number + len(lists)).reshape(-1, 1)
        parts.append(np.hstack([numbers, np.array(lists)]).astype("<u8").tobytes())
        number += len(lists)
    return parts


def write_msh(path, points, elements):
    """Binary MSH 4.1; one entity per physical group, the nodes in one block of a volume."""
    groups = sorted({(dimension, name) for dimension, name, _ in elements})
    tag = {group: i + 1 for i, group in enumerate(groups)}
    names = [f'\n{dimension} {tag[dimension, name]} "{name}"'.encode() for dimension, name in groups]
    sections = {
        "MeshFormat": [b"4.1 1 8\n", struct.pack("<i", 1)],
        "PhysicalNames": [str(len(names)).encode(), *names],
        "Entities": packed_entities(groups, tag, points),
        "Nodes": packed_nodes(points, tag[3, "moldbase"]),
        "Elements": packed_elements(elements, tag),
    }
    with open(path, "wb") as out:
        for name, parts in sections.items():
            out.write(f"${name}\n".encode() + b"".join(parts) + f"\n$End{name}\n".encode())


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("out", help="mesh file to write, .msh")
    parser.add_argument("--refine", type=int, default=1, metavar="F", help="split each cell's edges into F")
    parser.add_argument("--cell", type=float, default=8.0, help="edge of an unrefined cell in mm")
    arguments = parser.parse_args()
    points, elements = build(arguments.refine, arguments.cell)
    write_msh(arguments.out, points, elements)
    counts = {kind: sum(len(v) for (_, _, k), v in elements.items() if k == kind) for kind in NODES}
    print(f"{len(points)} nodes, {counts[HEXAHEDRON]} hexahedra, {counts[WEDGE]} wedges, "
          f"{counts[PYRAMID]} pyramids, {counts[TETRAHEDRON]} tetrahedra")


if __name__ == "__main__":
    main()
