"""`orvmesh ctg` and `orvmesh info` of its file from outside: results, refusals, and what they leave behind."""
import json
import os
import resource
import signal
import subprocess
import tempfile
import unittest

ORVMESH = os.environ["ORVMESH"]
SOURCE = os.environ["ORVMESH_SOURCE"]
MESH = {"nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1], [5, 5, 5]],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 5}, {"nodes": [2, 5, 3, 4], "a": 6}],
        "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1}]}


def run(*arguments, **options):
    return subprocess.run([ORVMESH, *arguments], capture_output=True, text=True, timeout=120, **options)


class Ctg(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        previous = os.getcwd()
        os.chdir(folder.name)
        self.addCleanup(os.chdir, previous)
        with open("mesh.json", "w") as text:
            json.dump(MESH, text)
        self.assertEqual(run("load", "mesh.json", "mold.ofe").returncode, 0)

    def refused(self, *arguments, names, **options):
        """Fails with one line that is no warning and names file and fault; nothing changed, nothing left."""
        before = sorted(os.listdir("."))
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, 1, arguments)
        errors = [line for line in result.stderr.splitlines() if ": warning: " not in line]
        self.assertEqual(len(errors), 1, result.stderr)
        for part in names:
            self.assertIn(part, errors[0])
        self.assertEqual(sorted(os.listdir(".")), before)

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
        with open("odd.json", "w") as text:
            json.dump(MESH | {"elementsMoldBase": mold, "elementSurfaces": [
                {"nodes": [1, 2, 3, 3], "interfaceId": 1}, {"nodes": [1, 2, 3, 3], "interfaceId": 2}]}, text)
        self.assertEqual(run("load", "odd.json", "odd.ofe").returncode, 0)
        told = run("ctg", "odd.ofe", "odd.ctg").stderr
        for part in ("faces name a node twice", "belong to a third element", "but no plastic face"):
            self.assertIn(part, told)

    def test_the_example_mold_is_sound(self):
        mesh = os.path.join(SOURCE, "examples", "mold", "mold.msh")
        for arguments in [("import", mesh, "big.ofe"), ("ctg", "big.ofe", "big.ctg"), ("info", "big.ctg")]:
            result = run(*arguments)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("of these 0 on no boundary", result.stdout)
        self.assertGreater(json.loads(run("info", "--json", "big.ctg").stdout)["boundaries"]["plastic"]["faces"], 0)

    def test_bad_sources_and_targets(self):
        os.mkdir("folder")
        for name, content in {"empty.ctg": b"", "text": b"no mesh", "cut.ctg": b"[Header]\nVersion = 1004\n"}.items():
            with open(name, "wb") as file:
                file.write(content)
            self.refused("ctg", name, "text", names=[f"orvmesh: {name}: "])
            self.refused("info", name, names=[f"orvmesh: {name}: "])
        for name in ["missing", "folder"]:
            self.refused("ctg", name, "text", names=[f"orvmesh: {name}: "])
        for target in ["folder", "missing/mold.ctg", "/dev/full", "/proc/mold.ctg"]:
            self.refused("ctg", "mold.ofe", target, names=[f"orvmesh: {target}: cannot be written"])
        with open("text", "rb") as file:
            self.assertEqual(file.read(), b"no mesh")

    def test_a_full_disk(self):
        def small_files_only():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (512, 512))

        self.refused("ctg", "mold.ofe", "mold.ctg", names=["mold.ctg: ", "File too large"], preexec_fn=small_files_only)

    def test_usage(self):
        self.assertIn("Example: orvmesh ctg ", run("ctg", "--help").stdout)
        for wrong in [["ctg"], ["ctg", "mold.ofe"], ["ctg", "a", "b", "c"]]:
            self.assertEqual(run(*wrong).returncode, 2, wrong)


if __name__ == "__main__":
    unittest.main()
