"""`orvmesh check` from outside: exit codes, text, JSON, variants, and the page that lists the codes."""
import json
import os
import subprocess
import tempfile
import unittest

from support import MOLD, ORVMESH, SOURCE, VARIANTS, orvmesh as run


class Check(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.mold = os.path.join(cls.folder.name, "mold.ofe")
        roles = os.path.join(MOLD, "roles.json")
        run("import", "--quiet", "--roles", roles, os.path.join(MOLD, "mold.msh"), cls.mold, check=True)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def test_the_example_mold_is_sound(self):
        done = run("check", self.mold)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        self.assertIn("0 errors, 0 warnings, 0 notes", done.stdout)

    def test_solver_meshes_show_what_their_variant_documents(self):
        for variant in VARIANTS:
            with self.subTest(variant):
                mesh = self.path(variant + ".ofe")
                run("transfer", variant, self.mold, mesh, check=True)
                done = run("check", "--json", "--variant", variant, mesh)
                report = json.loads(done.stdout)
                self.assertEqual(report["variant"], variant)
                wrong = [f for f in report["findings"] if f["severity"] != "note"]
                self.assertEqual((done.returncode, wrong), (0, []))
                self.assertTrue(all("reason" in f for f in report["findings"]))
                self.assertEqual(run("check", mesh).returncode, 1)

    def test_a_finding_says_what_where_and_what_to_do(self):
        text = self.path("bad.json")
        with open(text, "w") as file:
            json.dump({"nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 4]],
                       "elementsPlastic": [{"nodes": [1, 3, 2, 4], "a": 1, "b": 1}]}, file)
        run("load", text, self.path("bad.ofe"), check=True)
        done = run("check", self.path("bad.ofe"))
        self.assertEqual(done.returncode, 1)
        for part in ("error: inverted-element (1)", "plastic element 1 at 0.25 0.25 1", "do: ", "1 error, 0 warn"):
            self.assertIn(part, done.stdout)
        report = json.loads(run("check", "--json", self.path("bad.ofe")).stdout)
        self.assertEqual((report["sound"], report["errors"]), (False, 1))
        self.assertEqual(report["findings"][0]["entities"],
                         [{"kind": "plastic element", "number": 1, "position": [0.25, 0.25, 1.0]}])

    def test_what_cannot_run_exits_2(self):
        with open(self.path("text"), "w") as file:
            file.write("no mesh")
        for words in ([self.path("missing")], [self.folder.name], [self.path("text")], [],
                      ["--variant", "none", self.mold]):
            done = run("check", *words)
            self.assertEqual((done.returncode, done.stdout), (2, ""), words)
            self.assertNotEqual(done.stderr, "")
        with open("/dev/full", "w") as full:
            done = subprocess.run([ORVMESH, "check", self.mold], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 2)

    def test_the_page_has_the_printed_tables(self):
        with open(os.path.join(SOURCE, "docs", "check.md")) as page:
            self.assertTrue(page.read().endswith(run("check", "--explain").stdout))


if __name__ == "__main__":
    unittest.main()
