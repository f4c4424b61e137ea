"""`orvmesh channels` and `orvmesh map` from outside: the example mold against numpy, tables of points as people write
them, refusals and what they leave behind."""
import contextlib
import io
import json
import os
import unittest

from support import EXAMPLE, MOLD, ORVMESH, FolderTest, done, orvmesh as run

import demo_channels  # found by way of support

# Two tetrahedra, the second of them a channel; node 7 is used by none. A wall, an end and a hose.
SMALL = {"format": "ofe-json", "version": 1, "header": {"fields": {"0": 14001, "29": 2.0}, "unit": "cm"},
         "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1], [2, 2, 2], [9, 9, 9]],
         "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 1}],
         "elementsCoolChannel": [{"nodes": [2, 3, 4, 5], "a": 1, "b": 3}],
         "elementSurfaces": [
             {"nodes": [2, 3, 4, 4], "interfaceId": 3, "ownerCode": 1, "contactCode": 0, "boundaryType": 3},
             {"nodes": [2, 3, 5, 0], "interfaceId": 4, "ownerCode": 1, "contactCode": 1, "boundaryType": 3},
             {"nodes": [3, 4, 5, 6], "interfaceId": 4, "ownerCode": 1, "contactCode": 0, "boundaryType": 3}]}


class Channels(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(SMALL, "small.ofe")

    def test_example_agrees_with_numpy(self):
        done("import", "--roles", os.path.join(MOLD, "roles.json"), EXAMPLE, "mold.ofe")
        with contextlib.redirect_stdout(io.StringIO()):
            self.assertEqual(list(demo_channels.show_channels(ORVMESH, "mold.ofe", ".")), [])
        self.assertNotIn("mold.log", os.listdir("."))

    def test_open_surface(self):
        found = json.loads(run("channels", "--json", "small.ofe").stdout)
        self.assertEqual(found["facesByKind"], {"other": 0, "coolant": 2, "heater": 0, "hose": 1})
        (group,) = found["groups"]
        self.assertEqual((group["inlets"], group["outlets"], group["hoses"], group["openEdges"]), (1, 0, 1, 6))
        self.assertFalse(group["closed"])
        self.assertAlmostEqual(group["wettedArea"], 4 * 0.75 ** 0.5)
        self.assertAlmostEqual(group["volume"], 8 / 3)
        self.assertIn("note: coolant 3: 6 edges have one face only (the first runs from node 2 to 4)",
                      done("channels", "small.ofe"))

    def test_stl(self):
        done("channels", "small.ofe", "-o", "c.stl")
        self.assertEqual(os.path.getsize("c.stl"), 84 + 50 * 4)
        done("map", "nodes", "--stl", "small.ofe")
        self.assertEqual(os.path.getsize("small.ofe.CCNodeToMBNode.stl"), 84 + 50 * 5)

    def test_meshes_without(self):
        self.load({k: SMALL[k] for k in ("format", "version", "nodes")}, "none.ofe")
        found = json.loads(run("channels", "--json", "none.ofe", "-o", "none.vtu").stdout)
        self.assertEqual((found["faces"], found["groups"], found["markers"]), (0, [], []))
        self.assertEqual(len(demo_channels.read_vtu("none.vtu")["group"]), 0)
        found = json.loads(run("map", "nodes", "--json", "none.ofe").stdout)
        self.assertEqual((found["nodes"], found["distances"]["maximum"]), (0, None))
        self.write("p.txt", "0 0 0 1\n")
        self.refused("map", "result", "none.ofe", "p.txt", "-o", "r.vtu", names=["none.ofe: ", "no volume elements"])
        self.refused("channels", "none.ofe", "-o", "none.stl", names=["none.stl: ", "no channel faces"])
        self.load(SMALL | {"elementsMoldBase": []}, "bare.ofe")
        self.assertEqual(json.loads(run("map", "nodes", "--json", "bare.ofe").stdout)["notFound"], 5)

    def test_tables_of_points(self):
        for text in ("0 0 0 1.5\n4 4 4 -2\n", "# x y z v\r\n0,0,0,1.5\r\n\r\n4,4,4,-2", "\ufeff%\n 0\t0 , +0\t15e-1\n4 4 4 -2 \n\n"):
            self.write("p.txt", text)
            told = json.loads(done("map", "result", "small.ofe", "p.txt", "-o", "r.vtu", "--json"))
            # Nodes in model units are twice the file's; those at equal distances take the first point.
            result = demo_channels.read_vtu("r.vtu")["result"].tolist()
            self.assertEqual(result[:5], [1.5, 1.5, 1.5, 1.5, 1.5])
            self.assertNotEqual(result[6], result[6])
            self.assertEqual(told["nodes"], 5)

    def test_bad_tables(self):
        cases = {"0 0 0 1\n1 2 3\n": ["p.txt: line 2 has 3 values", "x y z value"],
                 "# c\n\n1 2 3 4 5\n": ["line 3 has more than 4 values"], "1 2 x 4\n": ["line 1 has 'x'"],
                 "1,,2,3,4\n": ["line 1 has nothing before a comma"], "1,2,3,\n": ["line 1 ends with a comma"],
                 "1 nan 2 3\n": ["line 1 has 'nan'"], "1 2 3 1e999\n": ["1e999"], "": ["no points"],
                 "# only\n": ["no points"], "1 2 3 +-4\n": ["+-4"]}
        for text, names in cases.items():
            self.write("p.txt", text)
            self.refused("map", "result", "small.ofe", "p.txt", "-o", "r.vtu", names=names)


if __name__ == "__main__":
    unittest.main()
