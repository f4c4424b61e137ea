"""`orvmesh heat` from outside: the example's table against VTK and a brute-force search, odd tables, refusals."""
import json
import os
import unittest

import numpy as np

from support import EXAMPLE, MOLD, ORVMESH, SOURCE, FolderTest, grid_of, orvmesh as run

import demo_heat  # found by way of support

LOSSES = os.path.join(SOURCE, "examples", "heat", "losses.txt")

# Two tetrahedra, 10 cm long, and a face of which only nodes 2 to 4 are on the surface.
MESH = {"header": {"fields": {"0": 14001}, "unit": "cm"},
        "nodes": [[0, 0, 0], [10, 0, 0], [0, 10, 0], [0, 0, 10], [10, 10, 10]],
        "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 1}, {"nodes": [2, 3, 4, 5], "a": 1, "b": 1}],
        "elementSurfaces": [{"interfaceId": 1, "nodes": [2, 3, 4, 4], "elementNo": 1}]}
TABLE = "% Nodes: 3\n% x y z q\n0 0 0 10000\n0.1 0 0 20000\n0.1 0.1 0.1 40000\n"


class Heat(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mesh.ofe")

    def heat(self, table, *options):
        self.write("table.txt", table)
        return run("heat", "table.txt", "mesh.ofe", "-o", "out.vtu", *options)

    def figures(self, table):
        done = self.heat(table, "--json")
        self.assertEqual(done.returncode, 0, done.stderr)
        found = json.loads(done.stdout)
        self.assertEqual([line.split(": warning: ")[1] for line in done.stderr.splitlines()], found["warnings"])
        return found

    def test_the_example_against_brute_force(self):
        words = ["--roles", os.path.join(MOLD, "roles.json"), EXAMPLE]
        self.assertEqual(list(demo_heat.map_losses(ORVMESH, words, LOSSES, ".")), [])

    def test_values_and_both_grids(self):
        found = self.figures(TABLE)
        self.assertEqual(found["warnings"], [])
        self.assertEqual(found["pointValues"], {"count": 3, "smallest": 1, "largest": 4, "mean": 7 / 3, "sum": 7})
        self.assertEqual(found["nodeValues"]["sum"], 9)
        volume, surface = grid_of("out.vtu").PointData, grid_of("out_surfaces.vtu").PointData
        np.testing.assert_allclose(volume["heatSource"], [-1e7, -2e7, -1e7, -1e7, -4e7])
        np.testing.assert_allclose(volume["loss"], [1, 2, 1, 1, 4])
        np.testing.assert_allclose(volume["distance"], [0, 0, 10, 10, 0])
        np.testing.assert_array_equal(surface["node"], [2, 3, 4])
        for name in ("heatSource", "loss", "distance"):
            np.testing.assert_array_equal(surface[name], volume[name][1:4])

    def test_odd_tables_are_told(self):
        found = self.figures("% Length unit: mm\r\n% Nodes: 8\r\n% x y z q p\r\n0 0 0 nan 1\r\n\r\n0.1 0 0 1 2 3\r\n"
                             "nan 0 0 1\r\n0.1 0.1 x\r\n0.1 0.1 0.1 1e400\r\n")
        points = found["points"]
        self.assertEqual((points["announced"], points["rows"], points["missing"]), (8, 6, 2))
        for key, line in (("nan", 4), ("blank", 5), ("dropped", 7), ("incomplete", 8), ("infinite", 9)):
            self.assertEqual(points[key], {"count": 1, "lines": [line]}, key)
        self.assertEqual(points["ignoredColumns"], 2)
        for part in ("length unit is mm", "2 of the announced points are missing", "nodes took a value that is not"):
            self.assertTrue(any(part in warning for warning in found["warnings"]), part)
        text = self.heat("% Nodes: 2\n% x\n0 0 0 nan\n1 1 1 1", "--start", "3", "--end", "2")
        self.assertIn("1 with a value that is no number (NaN) (line 3)", text.stdout)
        self.assertIn("never active", text.stderr)

    def test_mistaken_units_and_places(self):
        warnings = self.figures("% Nodes: 2\n% x\n0 0 0 1\n2.54 2.54 2.54 1\n")["warnings"]
        self.assertTrue(any("25.4 times larger" in warning for warning in warnings), warnings)
        warnings = self.figures(TABLE.replace("0.1 ", "5 ").replace("0 0 0 1", "5 5 5 1"))["warnings"]
        self.assertTrue(any("do not overlap" in warning for warning in warnings), warnings)

    def test_refusals_leave_nothing(self):
        cases = [("", "no table found"), ("% Nodes: 2\n% x\n", "no row"), ("% Nodes: x\n% x\n1 1 1 1\n", "line 1: "),
                 ("% Nodes: 2147483647\n% x\n1 1 1 1\n", "2147483647 points"),
                 ("% Nodes: 1\n% x\nnan 1 1 1\n", "finite")]
        for table, part in cases:
            self.write("table.txt", table)
            self.refused("heat", "table.txt", "mesh.ofe", "-o", "out.vtu", names=["table.txt: ", part])
        for words in ([], ["-o", "out.vtk"], ["-o", "out.vtu", "--start", "1"], ["-o", "out.vtu", "--end", "x"]):
            self.assertEqual(run("heat", LOSSES, "mesh.ofe", *words).returncode, 2, words)


if __name__ == "__main__":
    unittest.main()
