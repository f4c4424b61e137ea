"""To and from meshio."""
from __future__ import annotations

from typing import Any, Dict, List, Tuple

import numpy as np

from .columns import fail
from .mesh import Header, Mesh

# Node count, meshio's name, and its corners in our order (a wedge's triangles turn the other way round).
_CELLS: Tuple[Tuple[int, str, List[int]], ...] = (
    (4, "tetra", [0, 1, 2, 3]), (5, "pyramid", [0, 1, 2, 3, 4]), (6, "wedge", [0, 2, 1, 3, 5, 4]),
    (8, "hexahedron", [0, 1, 2, 3, 4, 5, 6, 7]))
_LISTS = (("plastic", "elementsPlastic"), ("mold", "elementsMoldBase"), ("channel", "elementsCoolChannel"))


def _meshio() -> Any:
    try:
        import meshio
    except ImportError as error:
        raise ImportError("meshio is not installed (Debian: apt-get install python3-meshio)") from error
    return meshio


def to_meshio(mesh: Mesh, surfaces: bool = True) -> Any:
    """The mesh as a meshio.Mesh: points (N, 3) in model units, points of cells from 0, new arrays.

    Cell data, a list of arrays (cells,) each: component (1 plastic, 2 mold, 3 channel, 0 surface), material, group,
    interface (0 for volume elements). Surfaces become triangles and quads; surfaces=False leaves them out. Raises
    ImportError where meshio is not installed.
    """
    meshio = _meshio()
    cells: List[Tuple[str, np.ndarray]] = []
    data: Dict[str, List[np.ndarray]] = {"component": [], "material": [], "group": [], "interface": []}

    def add(kind: str, corners: np.ndarray, values: Tuple[Any, ...]) -> None:
        cells.append((kind, corners))
        for array, value in zip(data.values(), values):
            array.append(np.broadcast_to(np.asarray(value, np.int32), len(corners)).copy())

    for component, (name, _) in enumerate(_LISTS, 1):
        elements = getattr(mesh, name)
        for count, kind, order in _CELLS:
            index, nodes = elements.of_size(count)
            if len(index):
                add(kind, nodes[:, order] - 1, (component, elements.materials[index], elements.groups[index], 0))
    if surfaces:
        table = mesh.surfaces
        for kind, corners, chosen in (("triangle", 3, table.triangles), ("quad", 4, ~table.triangles)):
            index = np.flatnonzero(chosen)
            if len(index):
                add(kind, table.nodes[index, :corners] - 1, (0, 0, table.groups[index], table.interfaces[index]))
    return meshio.Mesh(mesh.points(), cells, cell_data=data)


def from_meshio(mesh: Any) -> Mesh:
    """A Mesh of the volume cells of a meshio.Mesh that has the cell data of to_meshio() (arrays (cells,)).

    Cells without "component" are mold elements, those without "material" have material 1; surfaces are not taken (roles,
    surfaces and channels of a bare mesh are import_msh()'s work). Points (N, 3) become the file's lengths, scale 1; node
    numbers count from 1. Raises Error for cells of another kind, ImportError where meshio is not installed.
    """
    _meshio()
    orders = {kind: (count, np.argsort(order)) for count, kind, order in _CELLS}
    parts: Dict[int, List[Tuple[np.ndarray, np.ndarray, np.ndarray]]] = {1: [], 2: [], 3: []}
    for number, cells in enumerate(mesh.cells):
        if cells.type in ("triangle", "quad", "line", "vertex"):
            continue
        if cells.type not in orders:
            raise fail(f"cells[{number}]: {cells.type} (legal: {', '.join(orders)})")

        def values(name: str, default: int) -> np.ndarray:
            found = mesh.cell_data.get(name)
            return np.full(len(cells.data), default) if found is None else np.asarray(found[number])

        nodes = np.asarray(cells.data)[:, orders[cells.type][1]] + 1
        components, materials, groups = values("component", 2), values("material", 1), values("group", 0)
        if len(components) and not np.isin(components, (1, 2, 3)).all():
            raise fail(f"cells[{number}]: a component is none of 1, 2, 3")
        for component, pieces in parts.items():
            chosen = components == component
            if chosen.any():
                pieces.append((nodes[chosen], materials[chosen], groups[chosen]))
    blocks: Dict[str, Dict[str, Any]] = {"nodes": {"xyz": np.asarray(mesh.points, np.float32)}}
    for component, (_, block) in enumerate(_LISTS, 1):
        pieces = parts[component]
        if pieces:
            counts = np.concatenate([np.full(len(n), n.shape[1], np.int64) for n, _, _ in pieces])
            mixed = len({n.shape[1] for n, _, _ in pieces}) > 1
            blocks[block] = {"connectivity": np.concatenate([n.ravel() for n, _, _ in pieces]),
                             "fieldA": np.concatenate([m for _, m, _ in pieces]),
                             "fieldB": np.concatenate([g for _, _, g in pieces]),
                             "offsets": np.concatenate([[0], np.cumsum(counts)]) if mixed else None}
    return Mesh(blocks, Header())
