"""`orvmesh ofv`, and `info` and `export` of its files from outside; VTK judges the polyhedra."""
import json
import os
import unittest

import numpy as np
from vtkmodules.numpy_interface.dataset_adapter import WrapDataObject
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkFiltersVerdict import vtkCellSizeFilter
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader

from support import EXAMPLE, FolderTest, done, orvmesh as run, read, small_files
import read_ofe  # a script, which support makes known

# A unit cube as hexahedron, pyramid and wedge around it, and a tetrahedron apart; coolant boundary 7.
MESH = {"nodes": [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0], [0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1],
                  [0.5, 0.5, 2], [2, 0, 0], [2, 1, 0], [5, 5, 5], [6, 5, 5], [5, 6, 5], [5, 5, 6]],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4, 5, 6, 7, 8], "a": 5}, {"nodes": [5, 6, 7, 8, 9], "a": 6},
                             {"nodes": [10, 2, 6, 11, 3, 7], "a": 6}, {"nodes": [12, 13, 14, 15], "a": 8}],
        "elementSurfaces": [{"nodes": [12, 13, 14, 12], "interfaceId": 3, "boundaryType": 7}]}
VOLUMES = [1, 1 / 3, 0.5, 1 / 6]


def grid_of(path):
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    sizes = vtkCellSizeFilter()
    sizes.SetInputConnection(reader.GetOutputPort())
    sizes.Update()
    return WrapDataObject(sizes.GetOutput())


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
        with open("mesh.json", "w") as text:
            json.dump(MESH, text)
        done("load", "mesh.json", "mesh.ofe")
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
        self.assertEqual(run("ofv", "mesh.ctg", "some.ofv", "--only-channels").returncode, 2)

    def test_the_example_mold(self):
        done("import", "--quiet", EXAMPLE, "mold.ofe")
        for step in (("ctg", "mold.ofe", "mold.ctg"), ("ofv", "mold.ctg", "mold.ofv"), ("export", "mold.ofv", "mold.vtu")):
            done(*step)
        source = read_ofe.read("mold.ofe")
        corners = source["nodes"]["xyz"][source["elementsMoldBase"]["connectivity"].reshape(-1, 4) - 1].astype(float)
        edges = corners[:, 1:] - corners[:, :1]
        grid = grid_of("mold.vtu")
        # By the polyhedra's faces, as VTK reads them; its own filter takes a few of them for flat.
        faces = vtk_to_numpy(grid.VTKObject.GetFaces()).reshape(-1, 1 + 4 * 4)[:, 1:].reshape(-1, 4, 4)[:, :, 1:]
        found = np.linalg.det(np.asarray(grid.Points)[faces] - [80, 60, 100]).sum(axis=1) / 6
        # The CTG file has six digits of each coordinate.
        np.testing.assert_allclose(found, np.abs(np.linalg.det(edges)) / 6, rtol=1e-2, atol=1e-4)
        volumes = np.asarray(grid.CellData["Volume"])
        self.assertLess(np.count_nonzero(~np.isclose(volumes, found, rtol=1e-6)), 10)
        np.testing.assert_array_equal(grid.CellData["cavity"], source["elementsMoldBase"]["fieldA"])

    def test_a_result_on_its_points_goes_to_the_mesh(self):
        scaled = MESH | {"header": {"fields": {"29": 2.0}}}
        with open("scaled.json", "w") as text:
            json.dump(scaled, text)
        done("load", "scaled.json", "mesh.ofe")
        done("ctg", "mesh.ofe", "mesh.ctg")
        done("ofv", "mesh.ctg", "mesh.ofv", "--scale", "0.5")
        points = read_ofe.read_blocks("mesh.ofv")[5200][0][1].reshape(-1, 3)
        np.testing.assert_allclose(points, 2 * np.array(MESH["nodes"]))
        with open("values.txt", "w") as text:
            text.write("# x + 10 y + 100 z\n" + "".join(f"{value}\n" for value in points @ [1, 10, 100]))
        done("map", "result", "mesh.ofe", "mesh.ofv", "--values", "values.txt", "-o", "mapped.vtu")
        grid = grid_of("mapped.vtu")
        np.testing.assert_array_equal(grid.PointData["result"], np.asarray(grid.Points) @ [1, 10, 100])
        with open("few.txt", "w") as text:
            text.write("1\n2\n")
        for words, names in ((["mesh.ofv"], ["mesh.ofv: ", "--values"]),
                             (["mesh.ofv", "--values", "few.txt"], ["few.txt: has 2 values (legal: 15"]),
                             (["values.txt", "--values", "few.txt"], ["values.txt: is no OFV file"])):
            self.refused("map", "result", "mesh.ofe", *words, "-o", "mapped.vtu", names=names)

    def test_bad_sources_and_targets(self):
        done("ofv", "mesh.ctg", "mesh.ofv")
        sound = read("mesh.ofv")
        with open("cut.ofv", "wb") as file:
            file.write(sound[:-1])
        with open("open.ctg", "wb") as file:
            file.write(read("mesh.ctg").replace(b"15 = 5 5 6", b"15 = 5 5 5"))
        os.mkdir("folder")
        for name in ("cut.ofv", "mesh.ofe", "missing", "folder"):
            self.refused("ofv", name, "new.ofv", names=[f"orvmesh: {name}: "])
        self.refused("info", "cut.ofv", names=["orvmesh: cut.ofv: is cut off"])
        self.refused("export", "cut.ofv", "new.vtu", names=["orvmesh: cut.ofv: is cut off"])
        self.refused("ofv", "mesh.ctg", "./mesh.ctg", names=["orvmesh: ./mesh.ctg: is read"])
        for target in ("folder", "missing/a.ofv", "/dev/full"):
            self.refused("ofv", "mesh.ctg", target, names=[f"orvmesh: {target}: cannot be written"])
        self.refused("ofv", "mesh.ctg", "new.ofv", names=["new.ofv: ", "File too large"], preexec_fn=small_files())
        self.refused("export", "mesh.ofv", "new.vtu", names=["new.vtu: ", "File too large"], preexec_fn=small_files())

    def test_a_collapsed_element_is_refused(self):
        collapsed = MESH | {"elementsMoldBase": [{"nodes": [1, 1, 2, 5], "a": 1}]}
        with open("odd.json", "w") as text:
            json.dump(collapsed, text)
        done("load", "odd.json", "odd.ofe")
        done("ctg", "odd.ofe", "odd.ctg")
        self.refused("ofv", "odd.ctg", "odd.ofv", names=["orvmesh: odd.ctg: "])


if __name__ == "__main__":
    unittest.main()
