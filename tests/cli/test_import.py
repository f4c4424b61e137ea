"""orvmesh import from outside: report, exit codes, error lines, what becomes of the target."""
import json
import os
import sys
import unittest

from support import MOLD, FolderTest, done as finished, orvmesh, read

# Two unit cubes side by side along x, part and steel.
NODES = [(x, y, z) for z in (0, 1) for y in (0, 1) for x in (0, 1, 2)]
MESH = """$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
2
3 1 "%s"
3 2 "moldbase"
$EndPhysicalNames
$Nodes
12
%s
$EndNodes
$Elements
2
1 5 2 1 1 1 2 5 4 7 8 11 10
2 5 2 2 2 2 3 6 5 8 9 12 11
$EndElements
"""


def mesh_text(part="part"):
    nodes = "\n".join(f"{k} {x} {y} {z}" for k, (x, y, z) in enumerate(NODES, 1))
    return MESH % (part, nodes)


def run(*words):
    return orvmesh("import", *words)


class Import(FolderTest):
    mesh, target = "mold.msh", "mold.ofe"

    def setUp(self):
        super().setUp()
        self.write(self.mesh, mesh_text())
        self.write(self.target, "old")

    def stays(self, expected):
        self.refused("import", self.mesh, self.target, names=["orvmesh: ", expected])

    def test_report_is_text_json_or_nothing(self):
        text = run(self.mesh, self.target)
        self.assertEqual((0, ""), (text.returncode, text.stderr))
        self.assertIn("12 nodes, 2 volume elements", text.stdout)
        report = json.loads(run(self.mesh, self.target, "--json").stdout)
        self.assertEqual(["part:1", "moldbase:1"], [c["role"] for c in report["components"]])
        self.assertEqual([1, 1], [c["volumeOut"] for c in report["components"]])
        self.assertEqual((6, 6, 1), tuple(report["surfaces"][k] for k in ("1", "2", "partOnMold")))
        quiet = run(self.mesh, self.target, "--quiet")
        self.assertEqual((0, "", ""), (quiet.returncode, quiet.stdout, quiet.stderr))

    def test_refusals(self):
        self.write(self.mesh, mesh_text("prat"))
        self.stays("mold.msh: volume group 'prat': no known role; the nearest is part or part:MATERIAL")
        self.write(self.mesh, mesh_text()[:-30])
        self.stays("the file ends inside $Elements")

    def test_the_example_fills_every_block(self):
        roles = json.loads(read(os.path.join(MOLD, "roles.json")))
        self.write("roles.json", json.dumps({**roles, "badQuality": 0.15}))
        done = run(os.path.join(MOLD, "mold.msh"), self.target, "--roles", "roles.json")
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        dump = json.loads(finished("dump", self.target))
        self.assertEqual([], [name for name, entries in dump.items() if entries in ([], {})])
        self.assertEqual({1, 2, 3, 4, 5, 6}, {sensor["type"] for sensor in dump["sensors"]})
        inserts = {n for e in dump["elementsMoldBase"] if e["a"] > 5000 for n in e["nodes"]}
        self.assertEqual({False, True}, {s["ids"][0] in inserts for s in dump["sensors"] if s["type"] == 5})
        self.assertEqual(2, sum(entry[0] == 0 and entry[10] == 6 for entry in dump["coolantChannelLayout"]))
        self.assertEqual({0, 1}, {entry["isPoint"] for entry in dump["coolingChannelSurface"]})
        names = [entry["name"] for entry in dump["surfaceBoundaryConditionNames"]]
        lists = {entry["surfaceNo"]: {names[k - 1] for k in entry["list"]}
                 for entry in dump["surfaceBoundaryConditions"]}
        for number, surface in enumerate(dump["elementSurfaces"], 1):
            if surface["interfaceId"] == 1:
                owner = dump["elementsPlastic"][surface["elementNo"] - 1]
                valve = {4: {"valve at -x"}, 9: {"valve at +x"}}.get(surface["boundaryType"], set())
                self.assertEqual({"hot runner" if owner["b"] > 200 else "tray wall"} | valve, lists[number])

    def test_what_gmsh_writes(self):
        """A box in a box, all encodings and orders, by Gmsh itself."""
        try:
            import gmsh
        except ImportError:
            self.skipTest("python3-gmsh is not installed")
        gmsh.initialize()
        self.addCleanup(gmsh.finalize)
        gmsh.option.setNumber("General.Terminal", 0)
        outer, inner = gmsh.model.occ.addBox(0, 0, 0, 4, 4, 4), gmsh.model.occ.addBox(1, 1, 1, 2, 2, 2)
        _, pieces = gmsh.model.occ.fragment([(3, outer)], [(3, inner)])
        gmsh.model.occ.synchronize()
        part = [tag for _, tag in pieces[1]]
        steel = [tag for _, tag in pieces[0] if tag not in part]
        for tag, (name, volumes) in enumerate((("part", part), ("moldbase", steel)), 1):
            gmsh.model.addPhysicalGroup(3, volumes, tag)
            gmsh.model.setPhysicalName(3, tag, name)
        gmsh.model.mesh.generate(3)
        reports = []
        for order in (1, 2):
            gmsh.model.mesh.setOrder(order)
            for version in (2.2, 4.1):
                for binary in (0, 1):
                    gmsh.option.setNumber("Mesh.MshFileVersion", version)
                    gmsh.option.setNumber("Mesh.Binary", binary)
                    gmsh.write(self.mesh)
                    done = run(self.mesh, self.target, "--json")
                    self.assertEqual("", done.stderr)
                    report = json.loads(done.stdout)
                    self.assertEqual(report["secondOrder"] > 0, order == 2)
                    reports.append((report["surfaces"], [c["elements"] for c in report["components"]]))
                    for component, volume in zip(report["components"], (8, 56)):
                        self.assertAlmostEqual(volume, component["volumeOut"], 4)
        self.assertTrue(all(report == reports[0] for report in reports), reports)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
