"""info, dump, load and export as commands: figures, one-line errors, targets that stay as they were."""
import json
import os
import subprocess
import unittest

from support import ORVMESH, FolderTest, done, read

MESH = {"header": {"fields": {"0": 14002, "7": 5, "29": 0.5}, "unit": "mm"},
        "nodes": [[0, 0, 0], [2, 0, 0], [0, 2, 0], [0, 0, -2], [2, 2, 2]],
        "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201}, {"nodes": [1, 2, 3, 4], "a": 1, "b": 201},
                            {"nodes": [1, 2, 3, 4, 5], "a": 2, "b": 1}],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 5002}, {"nodes": [1, 2, 3, 4], "a": 10901}],
        "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1, "boundaryType": 4},
                            {"nodes": [1, 2, 3, 4], "interfaceId": 1, "boundaryType": 4},
                            {"nodes": [1, 2, 3, 0], "interfaceId": 2}],
        "surfaceBoundaryConditions": [{"surfaceNo": 2, "list": [1]}],
        "boundaryConditions": [{"entityNo": 1, "type": 1}, {"entityNo": 1, "type": 77}],
        "badElementsPlastic": [[1, 1]], "sensors": [{"type": 3}, {"type": 3}],
        "moldMetalLayers": [[1, 1, "", 0, 0, 0, 0]]}


class View(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mesh.ofe")
        self.write("target.vtu", "old")

    def test_info(self):
        info = json.loads(done("info", "--json", "mesh.ofe"))
        for key, value in {"version": 14002, "writtenVersion": 14002, "lengthFactor": 0.5, "nodes": 5,
                           "boundingBox": [[0, 0, -1], [1, 1, 1]], "surfaces": 3, "sensors": [0, 0, 2, 0, 0, 0],
                           "boundaryConditions": {"??": 1, "EM": 1}, "unit": "mm",
                           "notes": ["header field 7 (m_HEADER_NElemS) is 5, the file holds 3"]}.items():
            self.assertEqual(info[key], value, key)
        plastic = info["components"]["plastic"]
        self.assertEqual((plastic["elements"], plastic["bad"]), (3, 1))
        self.assertEqual([(p["a"], p["b"], p["role"], p["types"]["tetrahedra"], p["types"]["pyramids"])
                          for p in plastic["parts"]], [(1, 201, "hot runner", 2, 0), (2, 1, "part", 0, 1)])
        self.assertEqual([p["role"] for p in info["components"]["mold"]["parts"]], ["part insert", "heater"])
        self.assertEqual([list(row.values()) for row in info["interfaces"]], [[1, 4, 1, 1, 1], [2, 0, 1, 0, 0]])
        text = done("info", "mesh.ofe")
        for part in ("14002, written as 14002", "0 0 -1 to 1 1 1", "hot runner", "note: header field 7", "mold metal layers"):
            self.assertIn(part, text)

    def test_targets(self):
        self.write("big.json", json.dumps({"nodes": [[1.5, 2.5, 3.5]] * 20000}))
        done("load", "big.json", "big.ofe")
        for words in (("dump", "big.ofe", "-o"), ("load", "big.json"), ("export", "big.ofe")):
            for place, reason in (("no/x.vtu", "No such file"), ("/dev/full/x.vtu", "Not a directory")):
                self.refused(*words, place, names=[f"orvmesh: {place}: cannot be written: {reason}"])
        os.mkdir("target_surfaces.vtu")
        self.refused("export", "mesh.ofe", "target.vtu", names=["target_surfaces.vtu: cannot be written: Is a directory"])
        with open("/dev/full", "w") as full:
            dumped = subprocess.run([ORVMESH, "dump", "big.ofe"], stdout=full, stderr=subprocess.PIPE, text=True)
        self.assertEqual((dumped.returncode, "standard output: cannot be written" in dumped.stderr), (1, True))

    def test_dump_and_load(self):
        dumped = done("dump", "mesh.ofe")
        done("dump", "mesh.ofe", "-o", "mesh.json")
        self.assertEqual(read("mesh.json").decode(), dumped)
        done("load", "mesh.json", "copy.ofe")
        self.assertEqual(done("dump", "copy.ofe"), dumped)
        done("load", "--version", "2009", "mesh.json", "copy.ofe")
        self.assertEqual(json.loads(done("info", "--json", "copy.ofe"))["writtenVersion"], 2009)
        self.refused("load", "--version", "2013", "mesh.json", "copy.ofe", names=["mesh.json: version 2013 (legal: 2002, "])


if __name__ == "__main__":
    unittest.main()
