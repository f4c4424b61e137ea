"""What the tests of the command share."""
import json
import os
import subprocess
import sys
import tempfile
import unittest

ORVMESH = os.environ["ORVMESH"]
SOURCE = os.environ["ORVMESH_SOURCE"]
MOLD = os.path.join(SOURCE, "examples", "mold")
EXAMPLE = os.path.join(MOLD, "mold.msh")
VARIANTS = ("channels", "hot-runner", "stream-line", "moldbase", "part-inserts", "part-inserts-channels")
sys.path.append(os.path.join(SOURCE, "scripts"))


def orvmesh(*words, **options):
    """The finished process, both outputs as text."""
    return subprocess.run([ORVMESH, *words], capture_output=True, text=True, timeout=120, **options)


def done(*words):
    """Standard output of a call that must succeed."""
    process = orvmesh(*words)
    if process.returncode != 0:
        sys.exit(f"orvmesh {' '.join(words)}: exit code {process.returncode}\n{process.stdout}{process.stderr}")
    return process.stdout


def read(path):
    with open(path, "rb") as file:
        return file.read()


def grid_of(path):
    """The grid of a .vtu file as VTK reads it, with the sizes of its cells."""
    from vtkmodules.numpy_interface.dataset_adapter import WrapDataObject
    from vtkmodules.vtkFiltersVerdict import vtkCellSizeFilter
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    sizes = vtkCellSizeFilter()
    sizes.SetInputConnection(reader.GetOutputPort())
    sizes.Update()
    if reader.GetErrorCode():
        sys.exit(f"{path}: VTK cannot read it")
    return WrapDataObject(sizes.GetOutput())


class FolderTest(unittest.TestCase):
    """Tests that run in an empty folder of their own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        previous = os.getcwd()
        os.chdir(folder.name)
        self.addCleanup(os.chdir, previous)

    def write(self, path, text):
        with open(path, "w", newline="") as file:
            file.write(text)

    def load(self, mesh, path):
        """Makes an OFE file of a mesh in its JSON form."""
        self.write("mesh.json", json.dumps(mesh))
        done("load", "mesh.json", path)
        os.remove("mesh.json")

    def contents(self):
        return {path: read(path) if os.path.isfile(path) else None for path in os.listdir(".")}

    def refused(self, *arguments, names):
        """Fails with one line that is no warning and names file and fault; nothing changed, nothing left."""
        before = self.contents()
        result = orvmesh(*arguments)
        self.assertEqual(result.returncode, 1, arguments)
        errors = [line for line in result.stderr.splitlines() if ": warning: " not in line]
        self.assertEqual(len(errors), 1, result.stderr)
        for part in names:
            self.assertIn(part, errors[0])
        self.assertEqual(self.contents(), before)
