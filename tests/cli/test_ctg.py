"""`orvmesh ctg` and `orvmesh info` of its file from outside: results, and what readers of it may refuse."""
import json
import os
import unittest

from support import EXAMPLE, FolderTest, orvmesh as run

MESH = {"nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1], [5, 5, 5]],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 5}, {"nodes": [2, 5, 3, 4], "a": 6}],
        "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1}]}


class Ctg(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mold.ofe")

    def test_export_and_info(self):
        result = run("ctg", "mold.ofe", "mold.ctg")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("new nface = 7\n", result.stdout)
        self.assertIn("1 of 6 nodes belong to no mold element", result.stderr)
        os.rename("mold.ctg", "anything")
        told = json.loads(run("info", "--json", "anything").stdout)
        self.assertEqual((told["nodes"], told["elements"], told["faces"]["interior"], told["properties"]),
                         (5, 2, 1, {"5": 1, "6": 1}))
        self.assertFalse(os.path.exists("MeshTranslate.log"))

    def test_what_readers_may_refuse_is_told(self):
        mold = [{"nodes": nodes, "a": 1} for nodes in ([1, 2, 3, 4], [1, 3, 2, 5], [2, 1, 3, 5], [1, 1, 2, 5])]
        surfaces = [{"nodes": [1, 2, 3, 3], "interfaceId": interface} for interface in (1, 2)]
        self.load(MESH | {"elementsMoldBase": mold, "elementSurfaces": surfaces}, "odd.ofe")
        told = run("ctg", "odd.ofe", "odd.ctg").stderr
        for part in ("faces name a node twice", "belong to a third element", "but no plastic face"):
            self.assertIn(part, told)

    def test_the_example_mold_is_sound(self):
        for arguments in [("import", EXAMPLE, "big.ofe"), ("ctg", "big.ofe", "big.ctg"), ("info", "big.ctg")]:
            result = run(*arguments)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("of these 0 on no boundary", result.stdout)
        self.assertGreater(json.loads(run("info", "--json", "big.ctg").stdout)["boundaries"]["plastic"]["faces"], 0)


if __name__ == "__main__":
    unittest.main()
