"""`orvmesh sensors` and `orvmesh snc` from outside: the example's history, refusals, and what they leave behind."""
import json
import os
import sys
import tempfile
import unittest

from support import MOLD as EXAMPLE, ORVMESH, FolderTest, orvmesh as run

sys.path.append(EXAMPLE)
import demo_sensors
import make_history


def read(path):
    with open(path) as text:
        return text.read()


class Sensors(FolderTest):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.mesh = os.path.join(folder.name, "mold.ofe")
        roles = os.path.join(EXAMPLE, "roles.json")
        done = run("import", "--roles", roles, os.path.join(EXAMPLE, "mold.msh"), cls.mesh)
        assert done.returncode == 0, done.stderr
        cls.history = read(os.path.join(EXAMPLE, "history.snc"))

    def setUp(self):
        super().setUp()
        self.write("history.snc", self.history)

    def test_example_history_is_that_of_the_example_mold(self):
        lines = make_history.history(make_history.joined_order(ORVMESH, self.mesh), 8)
        self.assertEqual(self.history, "".join(line + "\n" for line in lines))
        self.assertEqual(list(demo_sensors.rewrite_history(ORVMESH, self.mesh, "history.snc", ".")), [])

    def test_list_and_map_agree(self):
        rows = json.loads(run("sensors", "list", "--json", self.mesh).stdout)["sensors"]
        components = {row["component"].rsplit(" ", 1)[0] for row in rows}
        self.assertLessEqual({"part", "part insert", "mold base"}, components)
        self.assertEqual({row["type"] for row in rows}, set(range(1, 7)))
        maps = json.loads(run("sensors", "map", "--json", self.mesh).stdout)
        numbered = [(row["number"], row["newType"], row["newNumber"]) for row in rows if row["number"]]
        self.assertEqual(numbered, [(e["number"], e["type"], e["global"]) for e in maps["oldToNew"]])
        back = {e["number"]: e["global"] for e in maps["newToOld"]}
        self.assertTrue(all(back[new] == old for old, _, new in numbered))
        for words in (["list"], ["map"], ["map", "--fast"]):
            self.assertIn(f"{len(rows) if words == ['list'] else len(numbered)} sensors",
                          run("sensors", *words, self.mesh).stdout)

    def test_in_place_with_a_name_of_its_own_and_elsewhere(self):
        name = "H\u00f6he \u6e29.snc"
        self.write(name, self.history)
        comma = {**os.environ, "LC_ALL": "de_DE.UTF-8"}
        self.assertEqual(run("snc", name, self.mesh, env=comma).returncode, 0)
        self.assertEqual(run("snc", "history.snc", self.mesh, "-o", "out.snc").stderr, "")
        self.assertEqual(read("history.snc"), self.history)
        self.assertEqual(read(name), read("out.snc"))
        self.assertEqual(sorted(os.listdir(".")), sorted([name, "history.snc", "out.snc"]))
        self.refused("snc", name, self.mesh, names=["rewritten before?", name])
        self.write("history.snc.tmc", "the original")
        self.refused("snc", "history.snc", self.mesh, names=["history.snc.tmc exists"])


if __name__ == "__main__":
    unittest.main()
