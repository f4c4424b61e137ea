"""What the tests of the Python module share: the example mold, imported once, and a folder that is emptied again."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE, ORVMESH = os.environ["ORVMESH_SOURCE"], os.environ["ORVMESH"]
for folder in ("scripts", "python/paraview"):
    sys.path.append(os.path.join(SOURCE, folder))


def command(*words):
    subprocess.run([ORVMESH, *words], check=True, stdout=subprocess.DEVNULL)


def read(path):
    with open(path, "rb") as file:
        return file.read()


class MoldTest(unittest.TestCase):
    """Tests in a folder that holds mold.ofe, the example, and mixed.ofe, one with all kinds of elements."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.addClassCleanup(os.chdir, os.getcwd())
        os.chdir(cls.folder)
        examples = os.path.join(SOURCE, "examples", "mold")
        command("import", f"{examples}/mold.msh", "mold.ofe", "--roles", f"{examples}/roles.json", "--quiet")
        subprocess.run(["/usr/bin/python3", f"{examples}/make_mixed.py", "mixed.msh"], check=True, stdout=subprocess.DEVNULL)
        command("import", "mixed.msh", "mixed.ofe", "--quiet")
