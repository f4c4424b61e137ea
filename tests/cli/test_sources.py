"""Every command with sources that it cannot read: one line that names the file, and nothing changed or left."""
import os
import shutil
import sys
import unittest

from support import SOURCE, FolderTest, read

sys.path.append(os.path.join(SOURCE, "tests", "campaigns"))
import inputs

READERS = [["info", "mold.ofe"], ["info", "mold.ctg"], ["info", "mold.ofv"], ["dump", "mold.ofe"],
           ["channels", "mold.ofe"], ["map", "nodes", "mold.ofe"], ["dmp", "info", "map.dmp"], ["dmp", "dump", "map.dmp"],
           ["sensors", "list", "mold.ofe"], ["sensors", "map", "mold.ofe"], ["sensors", "map", "--fast", "mold.ofe"]]


def damaged(content):
    half = len(content) // 2
    return {"empty": b"", "text": b"1\nno mesh\n", "cut": content[:half]}


class Sources(FolderTest):
    def setUp(self):
        super().setUp()
        inputs.small_inputs(".")
        for _, targets in inputs.COMMANDS.values():
            for target in targets:
                if not os.path.exists(target):
                    self.write(target, "old")
        os.mkdir("folder")

    def test_of_every_command(self):
        for words in [words for words, _ in inputs.COMMANDS.values()] + READERS:
            targets = [word for word in words if word.startswith("out.")]
            for at, source in enumerate(words):
                if not os.path.isfile(source) or source in targets:
                    continue
                # An empty file of roles, and half of one with rows, are good ones.
                bad = {} if source in ("roles.json", "points.txt", "losses.txt") else damaged(read(source))
                for name, content in bad.items():
                    with open(name, "wb") as file:
                        file.write(content)
                for name in ("missing", "folder", *bad):
                    with self.subTest(words=words, source=source, name=name):
                        self.refused(*words[:at], name, *words[at + 1:], names=[f"orvmesh: {name}: "])

    def test_damage_that_only_a_checksum_shows(self):
        for words, source in ((["transfer", "moldbase", "mold.ofe", "out.ofe"], "mold.ofe"),
                              (["export", "mold.ofv", "out.vtu"], "mold.ofv")):
            sound = read(source)
            for content in (sound[:-1], sound + b"\0", sound[:200] + bytes([sound[200] ^ 1]) + sound[201:]):
                with open(source, "wb") as file:
                    file.write(content)
                self.refused(*words, names=[f"orvmesh: {source}: "])

    def test_a_target_that_is_read(self):
        for words, _ in inputs.COMMANDS.values():
            for at, target in enumerate(words):
                for source in words[:at] if target.startswith("out.") else ():
                    if os.path.isfile(source) and target != "out.snc":
                        os.replace(target, "kept")
                        (os.link if at % 2 else os.symlink)(source, target)
                        with self.subTest(words=words, source=source):
                            self.refused(*words, names=["name another target"])
                        os.replace("kept", target)
        shutil.copy("mold.ofe", "out.snc")  # a history may be rewritten in its place, a mesh not
        self.refused("snc", "history.snc", "out.snc", "-o", "out.snc", names=["is the mesh"])

    def test_devices_are_no_targets(self):
        for words, targets in inputs.COMMANDS.values():
            if len(targets) == 1 and targets[0] in words and not targets[0].endswith((".vtu", ".stl")):
                full = ["/dev/full" if word in targets else word for word in words]
                self.refused(*full, names=["orvmesh: /dev/full: "])


if __name__ == "__main__":
    unittest.main()
