"""The ParaView reader: its blocks against the files of `orvmesh export`, its refusals, and itself in ParaView's Python."""
import os
import shutil
import subprocess
import unittest

import numpy as np
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkCommonDataModel import vtkMultiBlockDataSet
from vtkmodules.vtkFiltersVerdict import vtkCellSizeFilter
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader

from support import SOURCE, MoldTest, command, read
import orvmesh_reader as reader  # found through support

PVPYTHON = os.environ.get("ORVMESH_PVPYTHON") or shutil.which("pvpython")

SHOW = """
import inspect
import sys
if not hasattr(inspect, "getargspec"):  # ParaView 5.11 wants it, Python 3.11 has it no more
    inspect.getargspec = inspect.getfullargspec
from paraview.simple import LoadPlugin, OpenDataFile
LoadPlugin(sys.argv[1], remote=False, ns=globals())
source = OpenDataFile(sys.argv[2])
source.UpdatePipeline()
content = source.GetDataInformation()
arrays = content.GetCellDataInformation()
print("cells", content.GetNumberOfCells(), *sorted(arrays.GetArrayInformation(i).GetName()
                                                   for i in range(arrays.GetNumberOfArrays())))
"""


def exported(path):
    source = vtkXMLUnstructuredGridReader()
    source.SetFileName(path)
    source.Update()
    return source.GetOutput()


def sizes(grid):
    measure = vtkCellSizeFilter()
    measure.SetInputData(grid)
    measure.Update()
    return np.array([vtk_to_numpy(measure.GetOutput().GetCellData().GetArray(n)).sum() for n in ("Volume", "Area")])


def counted(grid, *names):
    rows = np.column_stack([vtk_to_numpy(grid.GetCellData().GetArray(n)).astype(int) for n in names])
    return [part.tolist() for part in np.unique(rows, axis=0, return_counts=True)]


def flat(content):
    if isinstance(content, np.ndarray):
        return content.tobytes()
    return [flat(part) for part in (content.values() if isinstance(content, dict) else content)]


class Reader(MoldTest):
    def test_blocks_are_those_of_export(self):
        for path in ("mold.ofe", "mixed.ofe"):
            command("export", path, "e.vtu")
            blocks = vtkMultiBlockDataSet()
            reader.fill_blocks(blocks, reader.read_mesh(path))
            self.assertEqual([blocks.GetMetaData(i).Get(vtkMultiBlockDataSet.NAME()) for i in range(3)],
                             ["volume", "surface", "sensors"])
            volume, surface = exported("e.vtu"), exported("e_surfaces.vtu")
            for mine, theirs, names in ((blocks.GetBlock(0), volume, ("component", "material", "group")),
                                        (blocks.GetBlock(1), surface, ("interface", "group"))):
                self.assertEqual(mine.GetNumberOfCells(), theirs.GetNumberOfCells())
                self.assertTrue(np.allclose(sizes(mine), sizes(theirs)))
                self.assertEqual(counted(mine, *names), counted(theirs, *names))
            self.assertEqual(mine.GetNumberOfCells(), len(np.unique(vtk_to_numpy(mine.GetCellData().GetArray("surface")))))

    def test_sensors(self):
        positions, arrays = reader.read_mesh("mold.ofe")["sensors"]
        self.assertEqual((positions.shape, sorted(arrays["type"])), ((9, 3), [1, 1, 2, 3, 4, 4, 5, 5, 6]))

    def test_refusals(self):
        data = read("mold.ofe")
        cases = [data[:n] for n in range(0, len(data), len(data) // 40)] + [b"", b"junk" * 40]
        for case in cases:
            with open("bad.ofe", "wb") as file:
                file.write(case)
            with self.assertRaises(reader.Fault):
                reader.read_mesh("bad.ofe")
        with self.assertRaises(reader.Fault):
            reader.read_mesh("none.ofe")

    def test_flipped_bytes_are_seen_where_they_are_read(self):
        data, sound = read("mold.ofe"), flat(reader.read_mesh("mold.ofe"))
        refused = 0
        for at in range(3, len(data), len(data) // 60):
            with open("bad.ofe", "wb") as file:
                file.write(data[:at] + bytes([data[at] ^ 0x55]) + data[at + 1:])
            try:
                self.assertEqual(flat(reader.read_mesh("bad.ofe")), sound, at)
            except reader.Fault:
                refused += 1
        self.assertGreater(refused, 30)

    def test_without_checksums_nothing_leads_outside(self):
        data, kept = read("mixed.ofe"), reader.CHECKSUM
        reader.CHECKSUM = None
        try:
            for at in [*range(0, 64), *range(len(data) - 2500, len(data)), *range(64, len(data), len(data) // 300)]:
                with open("bad.ofe", "wb") as file:
                    file.write(data[:at] + bytes([data[at] ^ 0x80]) + data[at + 1:])
                try:
                    mesh = reader.read_mesh("bad.ofe")
                except reader.Fault:
                    continue
                for part in ("volume", "surface"):
                    corners = mesh[part][2]
                    self.assertTrue(not len(corners) or 0 <= corners.min() and corners.max() < len(mesh["points"]))
        finally:
            reader.CHECKSUM = kept

    @unittest.skipUnless(PVPYTHON, "pvpython is not installed; scripts/check_paraview.sh runs this with an unpacked one")
    def test_in_paraview(self):
        with open("show.py", "w") as file:
            file.write(SHOW)
        plugin = os.path.join(SOURCE, "python", "paraview", "orvmesh_reader.py")
        done = subprocess.run([PVPYTHON, "show.py", plugin, "mold.ofe"], capture_output=True, text=True, timeout=300)
        mesh = reader.read_mesh("mold.ofe")
        cells = len(mesh["volume"][0]) + len(mesh["surface"][0]) + len(mesh["sensors"][0])
        words = next((line for line in done.stdout.splitlines() if line.startswith("cells ")), done.stderr).split()
        self.assertEqual(words[1:2], [str(cells)])
        self.assertLessEqual({"component", "material", "group", "element", "interface", "owner", "surface"}, set(words))


if __name__ == "__main__":
    unittest.main()
