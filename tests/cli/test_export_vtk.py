"""VTK opens what `orvmesh export` writes, and finds in it what `orvmesh dump` prints of the same file."""
import json
import os
import sys
import tempfile

import numpy as np
from vtk import vtkCellSizeFilter, vtkXMLUnstructuredGridReader
from vtk.util.numpy_support import vtk_to_numpy

from support import SOURCE, done as run

BLOCKS = ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")
VTK_TYPES = {4: 10, 5: 14, 6: 13, 8: 12}
TETRAHEDRA = {4: [(0, 1, 2, 3)], 5: [(0, 1, 2, 4), (0, 2, 3, 4)], 6: [(0, 1, 2, 5), (0, 1, 5, 4), (0, 4, 5, 3)],
              8: [(0, 1, 2, 6), (0, 2, 3, 6), (0, 3, 7, 6), (0, 7, 4, 6), (0, 4, 5, 6), (0, 5, 1, 6)]}


def same(what, found, expected):
    found, expected = np.asarray(found), np.asarray(expected)
    if found.shape != expected.shape or not np.array_equal(found, expected):
        sys.exit(f"{what}: {found} instead of {expected}")


def close(what, found, expected):
    if not np.allclose(found, expected, rtol=1e-4, atol=1e-12):
        sys.exit(f"{what}: {found} instead of {expected}")


def open_grid(path):
    reader = vtkXMLUnstructuredGridReader()
    errors = []
    reader.AddObserver("ErrorEvent", lambda *_: errors.append(path))
    reader.SetFileName(path)
    reader.Update()
    if errors or reader.GetErrorCode():
        sys.exit(f"{path}: VTK cannot read it")
    return reader.GetOutput()


def cell_array(grid, name):
    array = grid.GetCellData().GetArray(name)
    if array is None:
        sys.exit(f"no cell array {name}")
    return vtk_to_numpy(array)


def cell_points(grid, cell):
    ids = grid.GetCell(cell).GetPointIds()
    return [ids.GetId(i) for i in range(ids.GetNumberOfIds())]


def volume(points):
    total = 0.0
    for a, b, c, d in TETRAHEDRA[len(points)]:
        total += np.dot(np.cross(points[b] - points[a], points[c] - points[a]), points[d] - points[a]) / 6
    return total


def check_volumes(grid, mesh, points):
    elements = [(c + 1, i + 1, e) for c, block in enumerate(BLOCKS) for i, e in enumerate(mesh[block])]
    same("cells", grid.GetNumberOfCells(), len(elements))
    close("points", vtk_to_numpy(grid.GetPoints().GetData()), points)
    bad = {(c + 1, entry[0]) for c, block in enumerate(BLOCKS) for entry in mesh[block.replace("elem", "badElem")]}
    same("component", cell_array(grid, "component"), [c for c, _, _ in elements])
    same("element", cell_array(grid, "element"), [i for _, i, _ in elements])
    same("material", cell_array(grid, "material"), [e["a"] for _, _, e in elements])
    same("group", cell_array(grid, "group"), [e["b"] for _, _, e in elements])
    same("bad", cell_array(grid, "bad"), [int((c, i) in bad) for c, i, _ in elements])
    same("types", vtk_to_numpy(grid.GetCellTypesArray()), [VTK_TYPES[len(e["nodes"])] for _, _, e in elements])
    for cell in range(0, len(elements), max(1, len(elements) // 500)):
        same(f"nodes of cell {cell}", sorted(cell_points(grid, cell)), sorted(n - 1 for n in elements[cell][2]["nodes"]))

    sizes = vtkCellSizeFilter()
    sizes.SetInputData(grid)
    sizes.Update()
    found = cell_array(sizes.GetOutput(), "Volume")
    if found.min() <= 0:
        sys.exit(f"cell {found.argmin()} has the volume {found.min()} in VTK")
    expected = np.array([volume(points[np.array(e["nodes"]) - 1]) for _, _, e in elements])
    close("volume of each cell", found / expected, 1)
    for component in (1, 2, 3):
        chosen = cell_array(grid, "component") == component
        close(f"volume of component {component}", found[chosen].sum(), expected[chosen].sum())


def check_surfaces(grid, mesh, points):
    surfaces = mesh["elementSurfaces"]
    same("surface cells", grid.GetNumberOfCells(), len(surfaces))
    keys = ("ownerCode", "contactCode", "boundaryType", "elementNo", "tag")
    for name, key in [("interface", "interfaceId")] + [(key, key) for key in keys]:
        same(name, cell_array(grid, name), [s[key] for s in surfaces])
    same("tag group", cell_array(grid, "group"), [s["tag"] >> 8 & 0xFFFFF for s in surfaces])
    same("surface", cell_array(grid, "surface"), range(1, len(surfaces) + 1))
    corners = [s["nodes"][:3 if s["nodes"][3] in (0, s["nodes"][2]) else 4] for s in surfaces]
    same("surface types", vtk_to_numpy(grid.GetCellTypesArray()), [{3: 5, 4: 9}[len(c)] for c in corners])
    nodes = vtk_to_numpy(grid.GetPointData().GetArray("node"))
    same("used nodes", nodes, sorted({n for c in corners for n in c}))
    close("surface points", vtk_to_numpy(grid.GetPoints().GetData()), points[nodes - 1])
    for cell in range(0, len(surfaces), max(1, len(surfaces) // 500)):
        same(f"nodes of surface {cell}", nodes[cell_points(grid, cell)], corners[cell])


def check(ofe, folder):
    vtu = os.path.join(folder, "out.vtu")
    run("export", ofe, vtu)
    mesh = json.loads(run("dump", ofe))
    factor = mesh["header"]["fields"].get("29", 0) or 1
    points = np.array(mesh["nodes"], dtype=float).reshape(-1, 3) * factor
    check_volumes(open_grid(vtu), mesh, points)
    check_surfaces(open_grid(os.path.join(folder, "out_surfaces.vtu")), mesh, points)
    print(f"{ofe}: {len(mesh['nodes'])} nodes, {sum(len(mesh[b]) for b in BLOCKS)} elements,"
          f" {len(mesh['elementSurfaces'])} surfaces agree")


CUBE = [[0, 0, 0], [2, 0, 0], [2, 3, 0], [0, 3, 0], [0, 0, 4], [2, 0, 4], [2, 3, 4], [0, 3, 4], [1, 1, 7], [5, 1, 1]]


def mesh_of(factor, kinds):
    """Each block holds the kinds given, node counts of elements on the corners of a block and two tips."""
    lists = {4: [1, 2, 3, 5], 5: [5, 6, 7, 8, 9], 6: [1, 2, 4, 5, 6, 8], 8: [1, 2, 3, 4, 5, 6, 7, 8]}
    elements = [{"nodes": lists[n], "a": 7 + n, "b": n} for n in kinds]
    surfaces = [{"nodes": [6, 7, 3, 2], "interfaceId": 1, "ownerCode": -4, "contactCode": 5, "boundaryType": 6,
                 "elementNo": 7, "tag": 0x8000FF01}, {"nodes": [2, 3, 10, 0], "tag": 1 << 8},
                {"nodes": [2, 3, 10, 10], "interfaceId": 4}]
    return {"header": {"fields": {"0": 14001, "29": factor}}, "nodes": CUBE, "elementSurfaces": surfaces,
            "badElementsPlastic": [[len(kinds), 3]], "badElementsCoolChannel": [[1, 0]],
            **{block: elements for block in BLOCKS}}


with tempfile.TemporaryDirectory() as folder:
    ofe = os.path.join(folder, "mesh.ofe")
    for factor, kinds in [(0.25, (4, 5, 6, 8)), (1, (8, 6, 4, 5)), (0, (6, 6)), (1, (8,)), (0.001, (4, 4))]:
        text = os.path.join(folder, "mesh.json")
        with open(text, "w", encoding="utf-8") as file:
            json.dump(mesh_of(factor, kinds), file)
        run("load", text, ofe)
        check(ofe, folder)
    with open(text, "w", encoding="utf-8") as file:
        json.dump({"nodes": []}, file)
    run("load", text, ofe)
    run("export", ofe, os.path.join(folder, "empty.vtu"))
    same("points of an empty file", open_grid(os.path.join(folder, "empty.vtu")).GetNumberOfPoints(), 0)
    run("import", f"{SOURCE}/examples/mold/mold.msh", ofe)
    check(ofe, folder)
