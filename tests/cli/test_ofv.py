"""`orvmesh ofv`, and `info` and `export` of its files from outside; VTK judges the polyhedra."""
import json
import os
import unittest

import numpy as np

from support import FolderTest, done, grid_of, read
import read_ofe  # a script, which support makes known

# A unit cube as hexahedron, pyramid and wedge around it, and a tetrahedron apart; coolant boundary 7.
MESH = {"nodes": [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0], [0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1],
                  [0.5, 0.5, 2], [2, 0, 0], [2, 1, 0], [5, 5, 5], [6, 5, 5], [5, 6, 5], [5, 5, 6]],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4, 5, 6, 7, 8], "a": 5}, {"nodes": [5, 6, 7, 8, 9], "a": 6},
                             {"nodes": [10, 2, 6, 11, 3, 7], "a": 6}, {"nodes": [12, 13, 14, 15], "a": 8}],
        "elementSurfaces": [{"nodes": [12, 13, 14, 12], "interfaceId": 3, "boundaryType": 7}]}
VOLUMES = [1, 1 / 3, 0.5, 1 / 6]


def area_sums(grid):
    """Per cell: the length of the sum of its faces' area vectors as they are turned in the file."""
    for c in range(grid.GetNumberOfCells()):
        cell = grid.VTKObject.GetCell(c)
        total = np.zeros(3)
        for f in range(cell.GetNumberOfFaces()):
            ids = [cell.GetFace(f).GetPointId(k) for k in range(cell.GetFace(f).GetNumberOfPoints())]
            corners = np.asarray(grid.Points)[ids]
            total += 0.5 * np.cross(corners - corners[0], np.roll(corners, -1, axis=0) - corners[0]).sum(axis=0)
        yield np.linalg.norm(total)


class Ofv(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mesh.ofe")
        done("ctg", "mesh.ofe", "mesh.ctg")

    def test_cells_of_all_types(self):
        done("ofv", "mesh.ctg", "mesh.ofv")
        done("export", "mesh.ofv", "mesh.vtu")
        grid = grid_of("mesh.vtu")
        np.testing.assert_allclose(grid.CellData["Volume"], VOLUMES, rtol=1e-6)
        np.testing.assert_array_equal(grid.CellData["cavity"], [5, 6, 6, 8])
        self.assertLess(max(area_sums(grid)), 1e-12)
        os.rename("mesh.ofv", "anything")
        told = json.loads(done("info", "--json", "anything"))
        self.assertEqual((told["cells"], told["faces"], told["inlets"]),
                         (4, {"all": 18, "interior": 2, "boundary": 16}, [{"id": 1, "channelGroup": 7}]))
        np.testing.assert_allclose([c["volume"] for c in told["cavities"]], [1, 1 / 3 + 0.5, 1 / 6])

    def test_channels_alone(self):
        done("ofv", "mesh.ctg", "some.ofv", "--channel", "6", "--channel", "8", "--only-channels")
        done("export", "some.ofv", "some.vtu")
        grid = grid_of("some.vtu")
        np.testing.assert_allclose(grid.CellData["Volume"], VOLUMES[1:], rtol=1e-6)
        np.testing.assert_array_equal(grid.CellData["kind"], 1)
        self.assertEqual(json.loads(done("info", "--json", "some.ofv"))["faces"]["interior"], 0)
        self.refused("ofv", "mesh.ctg", "some.ofv", "--channel", "9", names=["mesh.ctg: ", "property 9"])

    def test_a_result_on_its_points_goes_to_the_mesh(self):
        self.load(MESH | {"header": {"fields": {"29": 2.0}}}, "mesh.ofe")
        done("ctg", "mesh.ofe", "mesh.ctg")
        done("ofv", "mesh.ctg", "mesh.ofv", "--scale", "0.5")
        points = read_ofe.read_blocks("mesh.ofv")[5200][0][1].reshape(-1, 3)
        np.testing.assert_allclose(points, 2 * np.array(MESH["nodes"]))
        self.write("values.txt", "# x + 10 y + 100 z\n" + "".join(f"{value}\n" for value in points @ [1, 10, 100]))
        done("map", "result", "mesh.ofe", "mesh.ofv", "--values", "values.txt", "-o", "mapped.vtu")
        grid = grid_of("mapped.vtu")
        np.testing.assert_array_equal(grid.PointData["result"], np.asarray(grid.Points) @ [1, 10, 100])
        self.write("few.txt", "1\n2\n")
        for words, names in ((["mesh.ofv"], ["mesh.ofv: ", "--values"]),
                             (["mesh.ofv", "--values", "few.txt"], ["few.txt: has 2 values (legal: 15"]),
                             (["values.txt", "--values", "few.txt"], ["values.txt: is no OFV file"])):
            self.refused("map", "result", "mesh.ofe", *words, "-o", "mapped.vtu", names=names)

    def test_bad_sources(self):
        done("ofv", "mesh.ctg", "mesh.ofv")
        with open("cut.ofv", "wb") as file:
            file.write(read("mesh.ofv")[:-1])
        self.refused("info", "cut.ofv", names=["orvmesh: cut.ofv: is cut off"])
        self.load(MESH | {"elementsMoldBase": [{"nodes": [1, 1, 2, 5], "a": 1}]}, "odd.ofe")  # collapsed
        done("ctg", "odd.ofe", "odd.ctg")
        self.refused("ofv", "odd.ctg", "odd.ofv", names=["orvmesh: odd.ctg: "])


if __name__ == "__main__":
    unittest.main()
