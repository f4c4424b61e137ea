"""transfer --dmp: the numbers lead from every entry of the source to its image in the target and back, in every
variant and both forms."""
import json
import os
import tempfile
import unittest

import numpy as np

from support import EXAMPLE, VARIANTS, done, orvmesh

import read_ofe  # found by way of support

LISTS = {"elementPlasticMap": "elementsPlastic", "elementMoldBaseMap": "elementsMoldBase",
         "elementCoolChannelMap": "elementsCoolChannel"}
NUMBERED_KINDS = (1, 2, 4, 5, 6)


def elements_of(mesh, name):
    """The node lists of a block, each as a set."""
    block = mesh[name]
    if not block:
        return []
    nodes, offsets = block["connectivity"], block["offsets"]
    if len(offsets) == 0:
        return [frozenset(row) for row in nodes.reshape(len(block["fieldA"]), -1).tolist()]
    return [frozenset(nodes[a:b].tolist()) for a, b in zip(offsets[:-1], offsets[1:])]


def sensors_of(mesh):
    """Positions by number, entry 0 of no use."""
    positions = np.zeros((1, 3))
    for kind in NUMBERED_KINDS if mesh["sensors"] else ():
        of_kind = mesh["sensors"]["position"][mesh["sensors"]["type"] == kind]
        positions = np.concatenate([positions, of_kind])
    return positions


class Numbers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.mold = cls.path("mold.ofe")
        done("import", EXAMPLE, cls.mold)
        cls.source = read_ofe.read(cls.mold)
        cls.source_lists = {name: elements_of(cls.source, name) for name in LISTS.values()}

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder.name, name)

    def transfer(self, variant, version):
        target, dump = self.path("target.ofe"), self.path("map.dmp")
        done("transfer", variant, self.mold, target, "--dmp", dump, "--dmp-version", version)
        return read_ofe.read(target), json.loads(done("dmp", "dump", dump))

    def check_elements(self, target, dump):
        images = [nodes for name in LISTS.values() for nodes in elements_of(target, name)]
        taken = []
        for block, name in LISTS.items():
            numbers = dump[block]
            self.assertEqual(len(numbers), len(self.source_lists[name]))
            for nodes, number in zip(self.source_lists[name], numbers):
                if number:
                    self.assertEqual(nodes, images[number - 1])
                    taken.append(number)
        self.assertEqual(sorted(taken), list(range(1, len(images) + 1)))

    def check_ends(self, variant, target, dump):
        faces, images = self.source["elementSurfaces"], target["elementSurfaces"]
        ends = np.flatnonzero(faces["interfaceId"] == 4) + 1
        pairs = np.array(dump["elementCoolantEndMap"], dtype=int).reshape(-1, 2)
        np.testing.assert_array_equal(pairs[:, 0], [] if variant == "hot-runner" else ends)
        np.testing.assert_array_equal(faces["nodes"][pairs[:, 0] - 1, :3], images["nodes"][pairs[:, 1] - 1, :3])
        self.assertEqual(len(set(pairs[:, 1])), len(pairs))

    def check_sensors(self, target, dump):
        numbers = np.array(dump["sensorMap"])
        before, after = sensors_of(self.source), sensors_of(target)
        self.assertEqual(len(numbers), len(before) - 1)
        kept = np.flatnonzero(numbers)
        np.testing.assert_allclose(after[numbers[kept]], before[kept + 1], rtol=1e-6)
        self.assertEqual(sorted(numbers[kept]), list(range(1, len(after))))

    def test_there_and_back(self):
        for variant in VARIANTS:
            for version in ("2004", "1023"):
                with self.subTest(variant=variant, version=version):
                    target, dump = self.transfer(variant, version)
                    nodes = np.array(dump["nodeMap"])
                    np.testing.assert_array_equal(target["nodes"]["xyz"][nodes[:, 1] - 1],
                                                  self.source["nodes"]["xyz"][nodes[:, 0] - 1])
                    self.assertEqual(len(np.unique(nodes[:, 0])), len(self.source["nodes"]["xyz"]))
                    self.check_elements(target, dump)
                    self.check_ends(variant, target, dump)
                    self.check_sensors(target, dump)

    def test_sensor_numbers_are_those_of_the_sensor_maps(self):
        _, dump = self.transfer("part-inserts", "2005")
        maps = json.loads(done("sensors", "map", self.mold, "--json"))
        self.assertEqual(dump["sensorMap"], [row["global"] for row in maps["oldToNew"]])

    def test_a_text_dump_converts_without_loss_of_its_channel_map(self):
        _, dump = self.transfer("channels", "1023")
        done("dmp", "convert", self.path("map.dmp"), self.path("blocks.dmp"))
        copy = json.loads(done("dmp", "dump", self.path("blocks.dmp")))
        for block in ("nodeMap", "elementCoolantEndMap", *LISTS):
            self.assertEqual(copy[block], dump[block])

    def test_refusals(self):
        target, dump = self.path("new.ofe"), self.path("new.dmp")
        for code, words, text in ((1, ("--dmp", self.mold), "name another target"),
                                  (1, ("--dmp", target), "name another target"),
                                  (1, ("--dmp", dump, "--dmp-version", "2002"), "version 2002"),
                                  (2, ("--dmp-version", "1023"), "--dmp"),
                                  (1, ("--dmp", self.path("none/new.dmp")), "cannot be written")):
            process = orvmesh("transfer", "channels", self.mold, target, *words)
            self.assertEqual((process.returncode, text in process.stderr), (code, True), process.stderr)
            self.assertFalse(os.path.exists(dump))

    def test_a_version_without_sensor_count_is_warned_of(self):
        process = orvmesh("transfer", "channels", self.mold, self.path("a.ofe"), "--dmp", self.path("a.dmp"),
                          "--dmp-version", "1022")
        self.assertEqual(process.returncode, 0)
        self.assertIn("version 1022 has no count of sensors", process.stderr)


if __name__ == "__main__":
    unittest.main()
