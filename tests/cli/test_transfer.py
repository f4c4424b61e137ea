"""`orvmesh transfer` and `orvmesh variants` from outside: results, refusals, and what they leave behind."""
import os
import unittest

from support import FolderTest, SOURCE, VARIANTS, orvmesh as run

COMMANDS = ("import", "info", "check", "dump", "load", "export", "transfer", "ctg", "ofv", "dmp info", "dmp dump",
            "dmp convert", "sensors list", "sensors map", "snc", "variants", "channels", "map nodes", "map result", "heat")
MESH = {"format": "ofe-json", "version": 1, "header": {"fields": {"0": 14001}},
        "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1]],
        "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201, "value": 0}],
        "elementsMoldBase": [{"nodes": [2, 3, 4, 5], "a": 5002, "b": 1, "value": 0}],
        "elementsCoolChannel": [{"nodes": [1, 2, 3, 5], "a": 1, "b": 3, "value": 0}]}


class Transfer(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mold.ofe")
        self.write("target.ofe", "old")

    def test_every_variant_writes_a_file_that_opens(self):
        for variant in VARIANTS:
            with self.subTest(variant):
                result = run("transfer", variant, "mold.ofe", variant + ".ofe")
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertEqual(run("info", variant + ".ofe").returncode, 0)
        self.assertFalse(os.path.exists("MeshTranslate.log"))

    def test_nothing_to_do_and_versions(self):
        fields = MESH["header"]["fields"]
        cases = [("part-inserts", {**fields, "18": 0}, "field 18"),
                 ("part-inserts-channels", {**fields, "17": 0, "18": 0}, "field 18 or 17"),
                 ("stream-line", {"0": 14000}, "14000"), ("channels", {"0": 15000}, "14001")]
        for variant, changed, part in cases:
            with self.subTest(variant=variant, part=part):
                self.load({**MESH, "header": {"fields": changed}}, "changed.ofe")
                self.refused("transfer", variant, "changed.ofe", "target.ofe", names=[part])
        self.load({**MESH, "header": {"fields": {"0": 13001}}}, "old.ofe")
        self.assertEqual(run("transfer", "hot-runner", "old.ofe", "target.ofe").returncode, 1)

    def test_usage(self):
        self.assertEqual(run("--version").stdout.split()[0], "orvmesh")
        self.assertIn("Example", run("--help").stdout)
        for name in COMMANDS:
            self.assertRegex(run(*name.split(), "--help").stdout, f"Examples?: orvmesh {name}")
            if name != "variants":
                self.assertEqual(run(*name.split()).returncode, 2, name)
        for wrong in ("", "nothing", "dmp", "sensors", "map", "transfer all a b", "transfer moldbase a", "ctg mold.ofe",
                      "ctg a b c", "dmp convert a", "export mold.ofe out.vtk", "info mold.ofe --nothing", "import a",
                      "import a b --scale 0", "import a b --marge", "import a b --merge -1", "import a b --json --quiet",
                      "channels mold.ofe -o c.txt", "map result mold.ofe p.txt", "ofv a b --only-channels"):
            self.assertEqual(run(*wrong.split()).returncode, 2, wrong)

    def test_printed_rules_are_the_committed_ones(self):
        with open(os.path.join(SOURCE, "docs", "variants.md")) as committed:
            self.assertEqual(run("variants", "--print").stdout, committed.read())


if __name__ == "__main__":
    unittest.main()
