"""Jobs on files: what the command writes, prints and refuses, the module does, too."""
import importlib.util
import json
import os
import subprocess
import unittest

import numpy as np
import orvmesh

from support import ORVMESH, SOURCE, MoldTest, command, read


def told(*words):
    done = subprocess.run([ORVMESH, *words], capture_output=True, text=True)
    return json.loads(done.stdout)


class Jobs(MoldTest):
    def test_transfer_is_the_command(self):
        for variant in orvmesh.VARIANTS:
            command("transfer", variant, "mold.ofe", "theirs.ofe", "--dmp", "theirs.dmp")
            done = orvmesh.transfer(variant, "mold.ofe", "ours.ofe")
            self.assertEqual(read("ours.ofe"), read("theirs.ofe"), variant)
            dump = orvmesh.read_dmp("theirs.dmp").blocks
            kept = np.flatnonzero(done.numbers["nodes"])
            self.assertTrue(np.array_equal(dump["nodeMap"], np.column_stack([kept + 1, done.numbers["nodes"][kept]])))
            for mine, theirs in (("plastic", "elementPlasticMap"), ("mold", "elementMoldBaseMap"),
                                 ("channel", "elementCoolChannelMap"), ("sensors", "sensorMap")):
                self.assertTrue(np.array_equal(done.numbers[mine], dump[theirs]), (variant, mine))
        done, types = orvmesh.transfer("part-inserts", "mold.ofe", "ours.ofe"), orvmesh.node_types("mold.ofe")
        self.assertTrue(np.array_equal(types, done.node_types))
        used = np.zeros(len(types), bool)
        mesh = orvmesh.read("mold.ofe")
        used[mesh.plastic.connectivity - 1] = True
        self.assertTrue(used[types == 1].all() and used[done.shared_nodes - 1].all() and len(done.shared_nodes))

    def test_numbers_outlive_the_result(self):
        numbers = orvmesh.transfer("moldbase", "mold.ofe", "m.ofe").numbers["mold"]
        for _ in range(3):
            orvmesh.transfer("channels", "mold.ofe", "c.ofe")
        self.assertEqual(sorted(numbers[numbers > 0]), list(range(1, orvmesh.read("m.ofe").plastic.size + 1)))

    def test_refusals(self):
        command("load", self.json({"nodes": [[0, 0, 0]]}), "empty.ofe")
        for job, code, file, text in (
                (lambda: orvmesh.transfer("part-inserts", "empty.ofe", "x.ofe"), "nothing-to-do", "empty.ofe", "18"),
                (lambda: orvmesh.transfer("everything", "mold.ofe", "x.ofe"), "argument", "", "legal: channels"),
                (lambda: orvmesh.transfer("moldbase", "none.ofe", "x.ofe"), "source", "none.ofe", "cannot be read"),
                (lambda: orvmesh.transfer("moldbase", "mold.ofe", "/nowhere/x.ofe"), "target", "/nowhere/x.ofe", ""),
                (lambda: orvmesh.check("none.ofe"), "source", "none.ofe", ""),
                (lambda: orvmesh.check("mold.ofe", "everything"), "argument", "", "everything"),
                (lambda: orvmesh.heat_source("mold.ofe", "mold.ofe"), "source", "mold.ofe", ""),
                (lambda: orvmesh.sensor_maps("none.ofe"), "source", "none.ofe", ""),
                (lambda: orvmesh.channel_surface("none.ofe"), "source", "none.ofe", ""),
                (lambda: orvmesh.map_channel_nodes("none.ofe"), "source", "none.ofe", ""),
                (lambda: orvmesh.read_dmp("mold.ofe"), "source", "mold.ofe", ""),
                (lambda: orvmesh.write_dmp("x.dmp", orvmesh.Dump(2002)), "argument", "x.dmp", "2002"),
                (lambda: orvmesh.load({"nodes": [[0, 0]]}, "x.ofe"), "argument", "", "nodes[0]"),
                (lambda: orvmesh.import_msh("mold.ofe", "x.ofe"), "source", "mold.ofe", ""),
                (lambda: orvmesh.nearest([[0, 0]], [[0, 0, 0]]), "argument", "", "points")):
            with self.assertRaises(orvmesh.Error) as raised:
                job()
            error = raised.exception
            self.assertEqual((error.code, error.file), (code, file), str(error))
            self.assertIn(text, str(error))
            self.assertEqual(len(str(error).splitlines()), 1)
        self.assertFalse(os.path.exists("x.ofe") or os.path.exists("x.dmp"))

    def json(self, content):
        with open("content.json", "w") as file:
            json.dump(content, file)
        return "content.json"

    def test_dump_and_load(self):
        self.assertEqual(orvmesh.dump("mold.ofe"), told("dump", "mold.ofe"))
        orvmesh.load(orvmesh.dump("mold.ofe"), "loaded.ofe")
        self.assertEqual(orvmesh.dump("loaded.ofe"), orvmesh.dump("mold.ofe"))

    def test_check(self):
        self.assertTrue(orvmesh.check("mold.ofe").sound)
        mesh = orvmesh.read("mold.ofe")
        nodes = mesh.plastic.connectivity.copy()
        nodes[:4] = nodes[[1, 0, 2, 3]]
        orvmesh.write("turned.ofe", mesh.replace({"elementsPlastic": {"connectivity": nodes}}))
        report = orvmesh.check("turned.ofe")
        theirs = told("check", "turned.ofe", "--json")["findings"]
        self.assertEqual([(f.code, f.entity_count) for f in report.findings], [(f["code"], f["count"]) for f in theirs])
        inverted = next(f for f in report.findings if f.code == "inverted-element")
        self.assertEqual((inverted.entities[0].number, len(inverted.entities[0].position)), (1, 3))

    def test_sensors(self):
        theirs = told("sensors", "list", "mold.ofe", "--json")["sensors"]
        self.assertEqual([(s.display, s.new_type, list(s.position)) for s in orvmesh.sensors("mold.ofe")],
                         [(s["display"], s["newType"], s["position"]) for s in theirs])
        for fast in (False, True):
            maps = orvmesh.sensor_maps("mold.ofe", fast)
            theirs = told("sensors", "map", "mold.ofe", "--json", *(["--fast"] if fast else []))
            for mine, key in ((maps.old_to_new, "oldToNew"), (maps.new_to_old, "newToOld")):
                self.assertEqual(mine.tolist(), [[r["type"], r["local"], r["global"]] for r in theirs[key]])

    def test_channels_and_mapping(self):
        mesh, surface = orvmesh.read("mold.ofe"), orvmesh.channel_surface("mold.ofe")
        self.assertTrue(np.allclose(surface.points, mesh.points()[surface.node_numbers - 1]))
        self.assertEqual(len(surface.faces), int(np.isin(mesh.surfaces.interfaces, (3, 4)).sum()))
        groups = orvmesh.channel_groups("mold.ofe")
        self.assertEqual(sum(g.walls for g in groups), int((surface.interfaces == 3).sum()))
        mapped = orvmesh.map_channel_nodes("mold.ofe")
        self.assertTrue(np.array_equal(mapped.nodes, surface.node_numbers))
        self.assertTrue(np.isin(mapped.mold_nodes, mesh.mold.connectivity).all())

        points, places = mesh.points()[:300], mesh.points()[300:500]
        found = orvmesh.nearest(points, places)
        away = np.linalg.norm(places[:, None] - points, axis=2)
        self.assertTrue(np.allclose(found.distances, away.min(axis=1)))
        self.assertTrue(np.allclose(away[np.arange(200), found.indices], away.min(axis=1)))
        self.assertEqual(orvmesh.nearest(np.empty((0, 3)), places[:1]).indices.tolist(), [-1])
        values = orvmesh.map_values(points, np.arange(300), "mold.ofe")
        every = orvmesh.map_values(points, np.arange(300), mesh)
        self.assertTrue(np.array_equal(values[~np.isnan(values)], every[~np.isnan(values)]))

    def test_heat_source(self):
        heat = orvmesh.heat_source(f"{SOURCE}/examples/heat/losses.txt", "mold.ofe")
        self.assertTrue(np.allclose(heat.source, heat.loss * -1e7))
        self.assertEqual((len(heat.loss), heat.rows), (len(orvmesh.read("mold.ofe").nodes), 400))

    def test_dumps(self):
        lines = {"nodeMap": [[1, 4], [2, 5]], "elementPlasticMap": [3, 1, 2], "elementCoolantEndMap": [[8, 9]],
                 "elementCoolLineToFaceMap": [[1, 2], [3, 4], [5, 6]], "sensorMap": [2, 1]}
        for version in (1023, 2004):
            orvmesh.write_dmp("a.dmp", orvmesh.Dump(version, lines, line_offsets=[0, 1, 1, 3]))
            back = orvmesh.read_dmp("a.dmp")
            for name, values in lines.items():
                if (version, name) != (1023, "elementCoolLineToFaceMap"):
                    self.assertEqual(back.blocks[name].tolist(), values, (version, name))
            self.assertEqual(int(back.header[0]), version)
        self.assertEqual(back.line_offsets.tolist(), [0, 1, 1, 3])
        self.assertIn("sensorMap", "".join(orvmesh.convert_dmp("a.dmp", "b.dmp", 1023)))
        before = read("a.dmp")
        with self.assertRaises(orvmesh.Error):
            orvmesh.write_dmp("a.dmp", orvmesh.Dump(2004, {"elementCoolChannelMap": [1], "elementCoolFaceToLineMap": [1]}))
        self.assertEqual(read("a.dmp"), before)

    def test_files(self):
        command("ctg", "mold.ofe", "theirs.ctg")
        subprocess.run(["/usr/bin/python3", "-c", "import orvmesh; orvmesh.export_ctg('mold.ofe', 'ours.ctg')"], check=True,
                       stdout=subprocess.DEVNULL)
        self.assertEqual(read("ours.ctg"), read("theirs.ctg"))
        command("export", "mold.ofe", "theirs.vtu")
        self.assertEqual([read(path) for path in orvmesh.export_vtu("mold.ofe", "ours.vtu")],
                         [read("theirs.vtu"), read("theirs_surfaces.vtu")])
        report = orvmesh.import_msh(f"{SOURCE}/examples/mold/mold.msh", "again.ofe",
                                    f"{SOURCE}/examples/mold/roles.json")
        self.assertEqual((read("again.ofe"), report["target"]), (read("mold.ofe"), "again.ofe"))

    @unittest.skipUnless(importlib.util.find_spec("matplotlib"), "matplotlib is not installed")
    def test_example_draws_its_picture(self):
        subprocess.run(["/usr/bin/python3", f"{SOURCE}/examples/python/picture.py", "."], check=True,
                       stdout=subprocess.DEVNULL)
        self.assertEqual(read("mold.png")[:4], b"\x89PNG")


if __name__ == "__main__":
    unittest.main()
