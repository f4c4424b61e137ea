"""scripts/read_ofe.py, the reader written from the format pages: values of a known mesh, and every fault it must see."""
import os
import subprocess
import unittest

from support import SOURCE, FolderTest, read

import read_ofe  # found by way of support

MESH = {
    "format": "ofe-json", "version": 1, "header": {"fields": {"0": 14001, "29": 0.5}, "unit": "mm"},
    "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1]],
    "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201, "value": 0.5}],
    "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 0, "value": 0},
                         {"nodes": [1, 2, 3, 4, 5], "a": 5002, "b": 0, "value": 0}],
    "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1, "ownerCode": 2, "contactCode": 3, "boundaryType": 4,
                         "elementNo": 1, "tag": 5}],
    "surfaceBoundaryConditionNames": [{"name": "g1", "type": 7, "dictionary": {"THICKNESS": "2.5"}}],
}


class ReadOfe(FolderTest):
    def setUp(self):
        super().setUp()
        self.load(MESH, "mesh.ofe")
        self.sound = read("mesh.ofe")

    def is_refused(self, data):
        with open("broken.ofe", "wb") as file:
            file.write(data)
        try:
            read_ofe.read("broken.ofe")
        except read_ofe.Fault:
            return True
        return False

    def test_values(self):
        mesh = read_ofe.read("mesh.ofe")
        for (block, column), wanted in {
                ("nodes", "xyz"): MESH["nodes"], ("elementsMoldBase", "offsets"): [0, 4, 9],
                ("elementsMoldBase", "fieldA"): [1, 5002], ("elementsPlastic", "offsets"): [],
                ("elementSurfaces", "boundaryType"): [4], ("header", "unit"): list(b"mm"),
                ("surfaceBoundaryConditionNames", "texts"): list(b"g1THICKNESS2.5")}.items():
            self.assertEqual(mesh[block][column].tolist(), wanted, (block, column))
        self.assertEqual(mesh["header"]["words"][29:30].view("<f4")[0], 0.5)
        self.assertEqual(mesh["sensors"], {})

    def test_damage_is_seen(self):
        self.assertIsNotNone(read_ofe.XXH3)
        for i in range(0, len(self.sound), 5):
            self.assertTrue(self.is_refused(self.sound[:i] + bytes([self.sound[i] ^ 0x41]) + self.sound[i + 1:]), i)
        for size in range(0, len(self.sound), 37):
            self.assertTrue(self.is_refused(self.sound[:size]), size)
        self.assertTrue(self.is_refused(self.sound + b"\0"))

    def test_script(self):
        self.is_refused(b"0")
        for paths, code, out in ((["mesh.ofe"], 0, "elementsMoldBase "), (["mesh.ofe", "broken.ofe"], 1, "")):
            done = subprocess.run([os.path.join(SOURCE, "scripts", "read_ofe.py"), *paths], capture_output=True, text=True)
            self.assertEqual((done.returncode, len(done.stderr.splitlines()), out in done.stdout), (code, code, True))


if __name__ == "__main__":
    unittest.main()
