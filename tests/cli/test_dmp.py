"""dmp info, dump and convert: what they print, what they warn of, targets that stay as they were."""
import json
import os
import unittest

from support import SOURCE, FolderTest, done, orvmesh, read

TEXT = read(os.path.join(SOURCE, "tests", "campaigns", "data", "map.dmp")).decode()
HEADER = TEXT[:TEXT.index("[NODE")]
BLOCKS = {"nodeMap": [[1, 10], [2, -20]], "elementPlasticMap": [3], "elementMoldBaseMap": [4],
          "elementCoolChannelMap": [5], "elementCoolantEndMap": [[6, 7]], "elementCoolFaceToLineMap": [],
          "elementCoolLineToFaceMap": [[[1, 2], [3, 4]]], "sensorMap": [8], "elementSurfaceMap": [],
          "elementSurface103104Map": []}


class Dmp(FolderTest):
    def setUp(self):
        super().setUp()
        self.write("map.dmp", TEXT)

    def blocks_of(self, path):
        dump = json.loads(done("dmp", "dump", path))
        return list(dump["header"].values()), {key: dump[key] for key in BLOCKS if key in dump}

    def test_info_and_dump(self):
        self.assertEqual(self.blocks_of("map.dmp")[1], BLOCKS)
        table = done("dmp", "info", "map.dmp")
        for part in ("version  1023, text form\n", "note: sensorMap: 0 of 1 entries"):
            self.assertIn(part, table)

    def test_convert_tells_what_it_loses(self):
        converted = orvmesh("dmp", "convert", "map.dmp", "copy", "--version", "2001")
        self.assertEqual(converted.returncode, 0)
        for text in ("elementCoolLineToFaceMap: 1 of 1 lines and 1 of 2 items are copied: the text form gives back half",
                     "sensorMap: 0 of 1 entries are copied: convert leaves this block out",
                     "elementCoolChannelMap: 1 entries come back as 2 entries: the block form counts it by the face-to-line",
                     "header value 7 (2) has no place in version 2001"):
            self.assertIn(f"orvmesh: copy: warning: {text}", converted.stderr)
        copied = dict(BLOCKS, elementCoolChannelMap=[5, 0], elementCoolLineToFaceMap=[[[1, 2]]], sensorMap=[])
        del copied["elementCoolFaceToLineMap"]
        self.assertEqual(self.blocks_of("copy"), ([2001, 5, 1, 1, 1, 2, 1], copied))
        self.assertIn("version  2001, block form", done("dmp", "info", "copy"))

    def test_refusals(self):
        self.write("target", "old")
        bad = {"": "is no mapping dump", "1\n[HEADER]\n1021 0\n[": "has version 1021 (legal: 1020, 1022, 1023, 2001",
               HEADER: "has no complete header", TEXT.replace("3\n[EL", "x\n[EL"): "elementPlasticMap[0] is no 32-bit integer",
               TEXT.replace("2 -20", "2"): "nodeMap[1] is not two", TEXT.replace("SENSOR", "SENSE"): "unknown heading [SENSE MAP]",
               TEXT.replace(" 4\n[SEN", "\n[SEN"): "elementCoolLineToFaceMap[0] has fewer items", TEXT[:-6]: "is cut off"}
        for text, error in bad.items():
            self.write("bad", text)
            for words in (("info", "bad"), ("dump", "bad"), ("dump", "bad", "-o", "target"), ("convert", "bad", "target")):
                self.refused("dmp", *words, names=[f"orvmesh: bad: {error}"])
        self.refused("dmp", "convert", "map.dmp", "target", "--version", "1021",
                     names=["orvmesh: target: cannot be written in version 1021 (legal: 1020"])
        self.refused("dmp", "convert", "map.dmp", "no/target", names=["orvmesh: no/target: cannot be written"])


if __name__ == "__main__":
    unittest.main()
