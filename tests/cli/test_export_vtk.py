"""VTK opens what `orvmesh export` writes, and finds in it what `orvmesh dump` prints of the same file."""
import json
import unittest

import numpy as np
from numpy.testing import assert_allclose, assert_array_equal
from vtkmodules.util.numpy_support import vtk_to_numpy

from support import EXAMPLE, FolderTest, done, grid_of

BLOCKS = ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")
VTK_TYPES = {4: 10, 5: 14, 6: 13, 8: 12}
TETRAHEDRA = {4: [(0, 1, 2, 3)], 5: [(0, 1, 2, 4), (0, 2, 3, 4)], 6: [(0, 1, 2, 5), (0, 1, 5, 4), (0, 4, 5, 3)],
              8: [(0, 1, 2, 6), (0, 2, 3, 6), (0, 3, 7, 6), (0, 7, 4, 6), (0, 4, 5, 6), (0, 5, 1, 6)]}
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


def volume(points):
    total = 0.0
    for a, b, c, d in TETRAHEDRA[len(points)]:
        total += np.dot(np.cross(points[b] - points[a], points[c] - points[a]), points[d] - points[a]) / 6
    return total


def cell_points(grid, cell):
    ids = grid.VTKObject.GetCell(cell).GetPointIds()
    return [ids.GetId(i) for i in range(ids.GetNumberOfIds())]


def types_of(grid):
    return vtk_to_numpy(grid.VTKObject.GetCellTypesArray())


def some_of(entries):
    return range(0, len(entries), max(1, len(entries) // 500))


class Export(FolderTest):
    def check_volumes(self, grid, mesh, points):
        elements = [(c + 1, i + 1, e) for c, block in enumerate(BLOCKS) for i, e in enumerate(mesh[block])]
        assert_allclose(grid.Points, points, rtol=1e-4, atol=1e-12)
        bad = {(c + 1, entry[0]) for c, block in enumerate(BLOCKS) for entry in mesh[block.replace("elem", "badElem")]}
        for name, values in {"component": [c for c, _, _ in elements], "element": [i for _, i, _ in elements],
                             "material": [e["a"] for _, _, e in elements], "group": [e["b"] for _, _, e in elements],
                             "bad": [int((c, i) in bad) for c, i, _ in elements]}.items():
            assert_array_equal(grid.CellData[name], values, name)
        assert_array_equal(types_of(grid), [VTK_TYPES[len(e["nodes"])] for _, _, e in elements])
        for cell in some_of(elements):
            self.assertEqual(sorted(cell_points(grid, cell)), sorted(n - 1 for n in elements[cell][2]["nodes"]), cell)
        found = np.asarray(grid.CellData["Volume"])
        self.assertGreater(found.min(), 0)
        assert_allclose(found, [volume(points[np.array(e["nodes"]) - 1]) for _, _, e in elements], rtol=1e-4)

    def check_surfaces(self, grid, mesh, points):
        surfaces = mesh["elementSurfaces"]
        for name in ("interface", "ownerCode", "contactCode", "boundaryType", "elementNo", "tag"):
            key = "interfaceId" if name == "interface" else name
            assert_array_equal(grid.CellData[name], [s[key] for s in surfaces], name)
        assert_array_equal(grid.CellData["group"], [s["tag"] >> 8 & 0xFFFFF for s in surfaces])
        assert_array_equal(grid.CellData["surface"], range(1, len(surfaces) + 1))
        corners = [s["nodes"][:3 if s["nodes"][3] in (0, s["nodes"][2]) else 4] for s in surfaces]
        assert_array_equal(types_of(grid), [{3: 5, 4: 9}[len(c)] for c in corners])
        nodes = np.asarray(grid.PointData["node"])
        assert_array_equal(nodes, sorted({n for c in corners for n in c}))
        assert_allclose(grid.Points, points[nodes - 1], rtol=1e-4, atol=1e-12)
        for cell in some_of(surfaces):
            self.assertEqual(nodes[cell_points(grid, cell)].tolist(), corners[cell], cell)

    def check(self, ofe):
        done("export", ofe, "out.vtu")
        mesh = json.loads(done("dump", ofe))
        factor = mesh["header"]["fields"].get("29", 0) or 1
        points = np.array(mesh["nodes"], dtype=float).reshape(-1, 3) * factor
        self.check_volumes(grid_of("out.vtu"), mesh, points)
        self.check_surfaces(grid_of("out_surfaces.vtu"), mesh, points)

    def test_every_kind_of_element(self):
        for factor, kinds in [(0.25, (4, 5, 6, 8)), (1, (8, 6, 4, 5)), (0, (6, 6)), (1, (8,)), (0.001, (4, 4))]:
            self.load(mesh_of(factor, kinds), "mesh.ofe")
            self.check("mesh.ofe")

    def test_nothing(self):
        self.load({"nodes": []}, "empty.ofe")
        done("export", "empty.ofe", "empty.vtu")
        self.assertEqual(grid_of("empty.vtu").GetNumberOfPoints(), 0)

    def test_the_example_mold(self):
        done("import", EXAMPLE, "mold.ofe")
        self.check("mold.ofe")


if __name__ == "__main__":
    unittest.main()
