"""transfer --dmp: what the dump of every variant holds in both forms, and what is refused."""
import json
import os
import tempfile
import unittest

import numpy as np

from support import EXAMPLE, VARIANTS, done, orvmesh

import read_ofe  # found by way of support

LISTS = {"elementPlasticMap": "elementsPlastic", "elementMoldBaseMap": "elementsMoldBase",
         "elementCoolChannelMap": "elementsCoolChannel"}


class Numbers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.mold = cls.path("mold.ofe")
        done("import", EXAMPLE, cls.mold)
        cls.source = read_ofe.read(cls.mold)

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

    def test_nodes_lead_to_their_places(self):
        for variant in VARIANTS:
            for version in ("2004", "1023"):
                with self.subTest(variant=variant, version=version):
                    target, dump = self.transfer(variant, version)
                    nodes = np.array(dump["nodeMap"])
                    np.testing.assert_array_equal(target["nodes"]["xyz"][nodes[:, 1] - 1],
                                                  self.source["nodes"]["xyz"][nodes[:, 0] - 1])
                    self.assertEqual(len(np.unique(nodes[:, 0])), len(self.source["nodes"]["xyz"]))
                    for block, name in LISTS.items():
                        self.assertEqual(len(dump[block]), len(self.source[name]["fieldA"]))

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
