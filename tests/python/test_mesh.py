"""Meshes as arrays: equal to a second reader's, over the file itself, alive without it, and written back whole."""
import gc
import os
import threading
import unittest

import numpy as np
import orvmesh

from support import MoldTest, read
import read_ofe  # found through support


def anonymous_memory():
    with open("/proc/self/status") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("RssAnon")) * 1024


def columns(mesh):
    return {(block, name): array for block, content in mesh.blocks.items() for name, array in content.items()}


class Reading(MoldTest):
    def test_surface_records(self):
        surfaces = orvmesh.read("mold.ofe").surfaces
        records = surfaces.records()
        self.assertEqual((records.shape, records.dtype.names), ((surfaces.size,), surfaces._fields))
        row = records[17].tolist()
        self.assertEqual([np.asarray(value).tolist() for value in row], [column[17].tolist() for column in surfaces])

    def test_equals_second_reader(self):
        for path in ("mold.ofe", "mixed.ofe"):
            expected, mesh = read_ofe.read(path), orvmesh.read(path)
            for block, content in mesh.blocks.items():
                for name, array in content.items():
                    wanted = expected[block].get(name)
                    if wanted is None:
                        self.assertEqual(array.size, 0, (block, name))
                    else:
                        self.assertEqual((array.dtype, array.tolist()), (wanted.dtype, wanted.tolist()), (block, name))
            header = expected["header"]
            self.assertEqual(mesh.header.words.tolist(), header["words"].tolist())
            self.assertEqual([list(text) for text in mesh.header.strings()],
                             [header[name].tolist() for name in ("source", "dateTime", "unit", "remark")])
            self.assertEqual(mesh.scale, float(header["words"][29:30].view("<f4")[0]))

    def test_tables_name_the_right_columns(self):
        mesh = orvmesh.read("mold.ofe")
        blocks = mesh.blocks
        for table, block in ((mesh.plastic, "elementsPlastic"), (mesh.mold, "elementsMoldBase"),
                             (mesh.channel, "elementsCoolChannel"), (mesh.surfaces, "elementSurfaces"),
                             (mesh.conditions, "boundaryConditions"), (mesh.bad("mold"), "badElementsMoldBase"),
                             (mesh.diameters, "coolantChannelDiameters"), (mesh.lines, "coolantChannelLines"),
                             (mesh.layout, "coolantChannelLayout"), (mesh.sensors, "sensors"),
                             (mesh.mold_inserts, "moldMetal"), (mesh.channel_geometry, "coolingChannelSurface"),
                             (mesh.surface_lists, "surfaceBoundaryConditions")):
            for mine, columns_own in zip(table, blocks[block].values(), strict=True):
                self.assertIs(mine, columns_own, block)
        dump = orvmesh.dump("mold.ofe")
        self.assertEqual([tuple(n) for n in mesh.surface_names],
                         [(n["name"], n["type"], n.get("dictionary")) for n in dump["surfaceBoundaryConditionNames"]])
        layers = mesh.layers("mold")
        self.assertEqual([[*v[:2], n, *v[2:]] for n, v in zip(layers.names, layers.values.tolist())],
                         dump["moldMetalLayers"])

    def test_nothing_is_copied_and_nothing_can_be_changed(self):
        before = anonymous_memory()
        mesh = orvmesh.read("mixed.ofe")
        self.assertLess(anonymous_memory() - before, 4 << 20)
        for place, array in columns(mesh).items():
            self.assertFalse(array.flags.writeable, place)
            if array.size:
                self.assertFalse(array.flags.owndata, place)
                self.assertIsNotNone(array.base, place)
        self.assertTrue(np.shares_memory(mesh.nodes, mesh.nodes))
        self.assertTrue(np.shares_memory(mesh.plastic.of_size(4)[1], mesh.plastic.connectivity)
                        or len(mesh.plastic.offsets))
        with self.assertRaises(ValueError):
            mesh.nodes[0, 0] = 1

    def test_arrays_outlive_mesh_and_file(self):
        orvmesh.write("gone.ofe", orvmesh.read("mold.ofe"))
        mesh = orvmesh.read("gone.ofe")
        nodes, tags = mesh.nodes, mesh.surfaces.tags[::2]
        del mesh
        os.remove("gone.ofe")
        gc.collect()
        fresh = orvmesh.read("mold.ofe")
        self.assertTrue(np.array_equal(nodes, fresh.nodes) and np.array_equal(tags, fresh.surfaces.tags[::2]))

    def test_mixed_elements_by_size(self):
        elements = orvmesh.read("mixed.ofe").mold
        starts = elements.starts()
        seen = 0
        for count in (4, 5, 6, 8):
            index, nodes = elements.of_size(count)
            seen += len(index)
            for at in (0, len(index) // 2, len(index) - 1) if len(index) else ():
                e = index[at]
                self.assertEqual(nodes[at].tolist(), elements.connectivity[starts[e]:starts[e + 1]].tolist())
        self.assertEqual(seen, elements.size)

    def test_damage_is_an_error_with_its_place(self):
        data = bytearray(read("mold.ofe"))
        for at in range(0, len(data), len(data) // 23):
            with open("broken.ofe", "wb") as file:
                file.write(data[:at] + bytes([data[at] ^ 0x41]) + data[at + 1:])
            with self.assertRaises(orvmesh.Error) as raised:
                orvmesh.read("broken.ofe")
            self.assertEqual((raised.exception.code, raised.exception.file), ("source", "broken.ofe"))
        mesh = orvmesh.read("mold.ofe")
        for path in (b"mold.ofe", "./mold.ofe"):
            self.assertEqual(len(orvmesh.read(path).nodes), len(mesh.nodes))


TETRAHEDRON = {"nodes": {"xyz": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]]},
               "elementsPlastic": {"connectivity": [1, 2, 3, 4], "fieldA": [1]}}


class Writing(MoldTest):
    def test_round_trip(self):
        for path in ("mold.ofe", "mixed.ofe"):
            mesh = orvmesh.read(path)
            orvmesh.write("copy.ofe", mesh)
            self.assertEqual(read("copy.ofe"), read(path))
        for variant in orvmesh.VARIANTS:
            orvmesh.transfer(variant, "mold.ofe", "solver.ofe")
            orvmesh.write("copy.ofe", orvmesh.read("solver.ofe"))
            self.assertEqual(orvmesh.dump("copy.ofe"), orvmesh.dump("solver.ofe"), variant)

    def test_file_that_is_read_can_be_replaced(self):
        orvmesh.write("same.ofe", orvmesh.read("mold.ofe"))
        mesh = orvmesh.read("same.ofe")
        half = mesh.replace({"nodes": {"xyz": mesh.nodes / 2}})
        orvmesh.write("same.ofe", half)
        self.assertTrue(np.array_equal(orvmesh.read("same.ofe").nodes, mesh.nodes / 2))
        self.assertEqual(orvmesh.read("same.ofe").header.words.tolist(), mesh.header.words.tolist())

    def test_counts_follow_the_arrays(self):
        orvmesh.write("new.ofe", TETRAHEDRON)
        words = orvmesh.read("new.ofe").header.words
        self.assertEqual([int(words[w]) for w in (0, 4, 5, 12, 15)], [14003, 1, 0, 4, 1])
        self.assertTrue(all(f.severity != "error" for f in orvmesh.check("new.ofe").findings))

    def test_bad_arrays(self):
        xyz = TETRAHEDRON["nodes"]
        for blocks, entity in (
                ({"nodes": xyz, "elementsPlastic": {"connectivity": [1, 2, 3, 5], "fieldA": [1]}},
                 "elementsPlastic[0].nodes[3]"),
                ({"nodes": xyz, "elementsPlastic": {"connectivity": [1] * 9, "fieldA": [1]}}, ""),
                ({"nodes": xyz, "elementsPlastic": {"connectivity": [1, 2, 3, 4], "fieldA": [1, 1, 1]}},
                 "elementsPlastic.offsets"),
                ({"nodes": xyz, "elementsPlastic": {"connectivity": [1] * 9, "fieldA": [1, 1], "offsets": [0, 12, 9]}},
                 "elementsPlastic.offsets"),
                ({"nodes": {"xyz": [[0, 0, np.inf]]}}, "nodes.xyz[0]"),
                ({"nodes": {"xyz": [[0, 0]]}}, "nodes.xyz"),
                ({"nodes": {"xyz": [["a", "b", "c"]]}}, "nodes.xyz"),
                ({"nodes": xyz, "sensors": {"ids": [[1, 2, 3, 4]], "type": [7]}}, "sensors[0].type"),
                ({"nodes": xyz, "sensors": {"ids": [[1, 2, 3, 2**40]], "type": [1]}}, "sensors.ids"),
                ({"nodes": xyz, "surfaceBoundaryConditionNames": {"texts": np.frombuffer(b"ab", np.uint8),
                  "typeAndDictionarySize": [[7, 3]], "offsets": [0, 1, 2]}}, "surfaceBoundaryConditionNames[0]"),
                ({"knots": xyz}, "knots")):
            orvmesh.write("kept.ofe", TETRAHEDRON)
            before = read("kept.ofe")
            with self.assertRaises(orvmesh.Error, msg=blocks) as raised:
                orvmesh.write("kept.ofe", blocks)
            if entity:
                self.assertEqual(raised.exception.entity, entity)
            self.assertEqual((raised.exception.code, read("kept.ofe")), ("argument", before))
        for path in ("/nowhere/x.ofe", "."):
            with self.assertRaises(orvmesh.Error) as raised:
                orvmesh.write(path, TETRAHEDRON)
            self.assertEqual((raised.exception.code, raised.exception.file), ("target", path))

    def test_meshio(self):
        try:
            import meshio  # noqa: F401
        except ImportError:
            with self.assertRaisesRegex(ImportError, "python3-meshio"):
                orvmesh.to_meshio(orvmesh.read("mold.ofe"))
            return
        for path in ("mold.ofe", "mixed.ofe"):
            mesh = orvmesh.read(path)
            there = orvmesh.to_meshio(mesh)
            self.assertEqual(sum(len(c.data) for c in there.cells),
                             mesh.plastic.size + mesh.mold.size + mesh.channel.size + mesh.surfaces.size)
            back = orvmesh.from_meshio(there)
            self.assertTrue(np.array_equal(back.nodes, mesh.nodes))
            for mine, other in ((mesh.plastic, back.plastic), (mesh.mold, back.mold), (mesh.channel, back.channel)):
                for count in (4, 5, 6, 8):
                    (_, a), (_, b) = mine.of_size(count), other.of_size(count)
                    self.assertTrue(np.array_equal(a, b))
                self.assertEqual(sorted(mine.materials), sorted(other.materials))
            orvmesh.write("back.ofe", back)


class Threads(MoldTest):
    def test_others_run_while_a_transfer_works(self):
        stop, counts = threading.Event(), [0]

        def count():
            while not stop.wait(0.0005):
                counts[0] += 1

        thread = threading.Thread(target=count)
        thread.start()
        try:
            before = counts[0]
            for _ in range(3):
                orvmesh.transfer("part-inserts-channels", "mold.ofe", "threads.ofe")
            during = counts[0] - before
        finally:
            stop.set()
            thread.join()
        self.assertGreater(during, 10)

    def test_transfers_of_several_threads(self):
        failures = []

        def work(number):
            try:
                orvmesh.transfer("moldbase", "mold.ofe", f"several{number}.ofe")
            except Exception as failure:  # noqa: BLE001
                failures.append(failure)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])
        self.assertEqual(len({read(f"several{number}.ofe") for number in range(4)}), 1)


if __name__ == "__main__":
    unittest.main()
