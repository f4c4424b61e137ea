#!/usr/bin/python3
"""Writes the seeds of the fuzz targets, at most 4 KiB each, one per kind of record: with the writers of the command
where it has one, by hand where it only reads. Usage: make_seeds.py ORVMESH [CORPUS]"""
import json
import pathlib
import struct
import subprocess
import sys
import tempfile

MOST_BYTES = 4096

CUBE = [[x, y, z] for z in (0, 1) for x, y in ((0, 0), (1, 0), (1, 1), (0, 1))]


def element(*nodes, a=1, b=1, value=0):
    return {"nodes": list(nodes), "a": a, "b": b, "value": value}


def surface(*nodes, of=1, element_no=1, **others):
    return {"nodes": list(nodes), "interfaceId": of, "elementNo": element_no, **others}


TETRAHEDRA = element(1, 2, 4, 5), element(2, 3, 4, 7)
MOLD_METAL = [{"isPoint": 1, "position": [0, 0, 1]}, {"isPoint": 1, "position": [1, 0, 1]},
              {"isPoint": 0, "nodes": [1, 2, 1, 0], "codeA": 4, "codeB": 5}]
CIRCUIT = {"elementsCoolChannel": [element(1, 2, 3, 5), element(1, 2, 3, 4, 5, 6, 7, 8, a=2, b=3)],
           "elementSurfaces": [surface(1, 2, 3, 3, of=3), surface(1, 2, 5, 5, of=4, boundaryType=1, tag=-2147483392),
                               surface(1, 3, 5, 5, of=4, boundaryType=1, ownerCode=1, tag=-2147483392)]}
INSERT = {"elementsPlastic": [TETRAHEDRA[0]], "elementsMoldBase": [element(2, 4, 5, 6, a=5002), element(2, 4, 6, 8)],
          "elementSurfaces": [surface(2, 4, 5, 5), surface(2, 4, 5, 5, of=2), surface(2, 4, 6, 6, of=2, element_no=2)]}
RUNNER = {"elementsPlastic": [element(1, 2, 4, 5, b=201), element(2, 4, 5, 6, b=1)],
          "elementSurfaces": [surface(2, 4, 5, 5, tag=259), surface(1, 2, 4, 4, tag=518)]}

# What stands in the mesh beside its eight nodes.
MESHES = {
    "nodes": {},
    "header": {"header": {"fields": {"0": 14002, "2": 1, "29": 0.001, "47": 3.5, "119": 6},
                          "source": "d:\\temp", "dateTime": "2024", "unit": "mm", "remark": "größe"}},
    "plastic": {"elementsPlastic": list(TETRAHEDRA)},
    "mixed": {"elementsMoldBase": [element(1, 2, 3, 4, 5, 6, 7, 8, a=11001), element(1, 2, 4, 5, 6, 8),
                                   element(1, 2, 3, 4, 5), TETRAHEDRA[0]]},
    "prisms": {"elementsMoldBase": [element(1, 2, 4, 5, 6, 8, a=6), element(2, 3, 4, 6, 7, 8, a=8)],
               "elementSurfaces": [surface(1, 2, 6, 5, of=3, tag=-2147481856), surface(1, 4, 2, 2, of=2)]},
    "circuit": CIRCUIT,
    "insert": INSERT,
    "runner": RUNNER,
    "conditions": {"elementSurfaces": [surface(1, 2, 3, 3)],
                   "boundaryConditions": [{"entityNo": 1, "type": 3, "value": 0.5}],
                   "surfaceBoundaryConditions": [{"surfaceNo": 1, "list": [1, 2]}],
                   "surfaceBoundaryConditionNames": [{"name": "gate", "type": 7, "dictionary": {"THICKNESS": "2.5"}},
                                                     {"name": "", "type": 0}]},
    "bad": {"elementsPlastic": list(TETRAHEDRA), "badElementsPlastic": [[1, -7]],
            "elementsMoldBase": [TETRAHEDRA[0]], "badElementsMoldBase": [[1, 0]],
            "elementsCoolChannel": [TETRAHEDRA[0]], "badElementsCoolChannel": [[1, 5]]},
    "layout": {"coolantChannelLines": [[0.1, 0.2, 0.3, 8, 1, 2, 3, 4], [0.5, 0.6, 0.7, 8, 1, 2, 3, 4]],
               "coolantChannelLayout": [[1, 0, 0, 0, 1] + [0] * 15, [1, 1, 0, 0, 2] + [0] * 15,
                                        [0, 0, 0, 0, 0, 1, 2, 0.25, 0.5, 4, 5, 6, 1, 2, 3, 4, 5, 6, 7, 8]]},
    "diameters": {"elementsCoolChannel": [TETRAHEDRA[0]], "coolantChannelDiameters": [{"nodes": [1, 2, 3], "diameter": 8}]},
    "sensors": {"elementsPlastic": [TETRAHEDRA[0]],
                "sensors": [{"type": t, "ids": [1, 1, 1, 1], "position": [0.5, 0.25, 0]} for t in range(1, 7)]},
    "geometry": {"moldMetal": MOLD_METAL, "coolingChannelSurface": MOLD_METAL[:1], "partingDirection": [0, 0.6, 0.8]},
    "layers": {"moldMetalLayers": [[1, 2, "steel", 3, 4, 5, 6]], "partInsertLayers": [[5002, 1, "", 0, 0, 0, 1]],
               "coolantChannelLayers": [[1, 1, "water"]]},
}

# Of those with a CTG mesh, the ones that are finite-volume meshes.
CLOSED = {"bad", "insert", "prisms"}

MSH_NAMES = [(3, 1, "part"), (3, 2, "moldbase"), (3, 3, "insert:5002"), (3, 4, "channel:1"), (3, 5, "heater:2"),
             (3, 6, "hotrunner:201"), (2, 7, "gate:7"), (2, 8, "inlet:1"), (0, 9, "sensor:2:3")]
# type, dimension, group, nodes; 11 is a tetrahedron of second order
MSH_MESHES = {
    "roles": [(4, 3, 1, (1, 2, 4, 5)), (4, 3, 2, (2, 3, 4, 7)), (4, 3, 3, (2, 4, 5, 7)), (15, 0, 9, (1,)),
              (4, 3, 6, (4, 5, 7, 8)), (2, 2, 7, (4, 5, 7)), (4, 3, 4, (2, 5, 6, 7)), (2, 2, 8, (5, 6, 7))],
    "shapes": [(5, 3, 2, (1, 2, 3, 4, 5, 6, 7, 8)), (6, 3, 1, (9, 10, 11, 12, 13, 14)), (7, 3, 5, (1, 2, 3, 4, 9)),
               (11, 3, 1, (5, 6, 7, 10, 1, 2, 3, 4, 8, 9))],
}
MSH_NODES = CUBE + [[0.5 + x, 0.5, 3 * z - 1.5] for x, _, z in CUBE[:6]]


def msh(elements, version, binary):
    out = b""

    def values(code, *numbers):
        if binary:
            return struct.pack("<%d%s" % (len(numbers), code), *numbers)
        return (" ".join(map(str, numbers)) + "\n").encode()

    def section(name, body):
        return b"$%s\n%s%s$End%s\n" % (name, body, b"\n" if binary else b"", name)

    out += b"$MeshFormat\n%s %d 8\n%s$EndMeshFormat\n" % (version.encode(), binary, b"\1\0\0\0\n" if binary else b"")
    out += b"$PhysicalNames\n%d\n" % len(MSH_NAMES)
    out += b"".join(b'%d %d "%s"\n' % (d, tag, name.encode()) for d, tag, name in MSH_NAMES) + b"$EndPhysicalNames\n"
    if version == "2.2":
        nodes = b"".join(struct.pack("<i3d", k, *p) if binary else b"%d %s" % (k, values("d", *p))
                         for k, p in enumerate(MSH_NODES, 1))
        cells = b"".join((values("i", kind, 1, 2) if binary else b"") +
                         (values("i", k, group, k, *n) if binary else values("i", k, kind, 2, group, k, *n))
                         for k, (kind, _, group, n) in enumerate(elements, 1))
        out += section(b"Nodes", b"%d\n" % len(MSH_NODES) + nodes)
        return out + section(b"Elements", b"%d\n" % len(elements) + cells)
    counts = [sum(e[1] == d for e in elements) for d in range(4)]
    entities = values("Q", *counts)
    for dimension in range(4):
        for k, (_, d, group, _) in enumerate(elements, 1):
            if d == dimension:
                entities += values("i", k) + values("d", *[0.5] * (3 if d == 0 else 6)) + values("Q", 1) + \
                    values("i", group) + (values("Q", 1) + values("i", -k) if d else b"")
    n = len(MSH_NODES)
    nodes = values("Q", 2, n, 1, n) + values("i", 3, 1, 0) + values("Q", n - 1) + values("Q", *range(1, n))
    nodes += b"".join(values("d", *p) for p in MSH_NODES[:-1])
    nodes += values("i", 2, 1, 1) + values("Q", 1) + values("Q", n) + values("d", *MSH_NODES[-1], 0.25, 0.75)
    cells = values("Q", len(elements), len(elements), 1, len(elements))
    for k, (kind, dimension, _, numbers) in enumerate(elements, 1):
        cells += values("i", dimension, k, kind) + values("Q", 1) + values("Q", k, *numbers)
    return out + section(b"Entities", entities) + section(b"Nodes", nodes) + section(b"Elements", cells)


SNC = """9
[HEADER] text
[SENSOR INFO]
numbers
1
1
0
1
1
1
1  7      1 2 3
2  8      1 2 3
4  9      1 2 3
5  9      1 2 3
6  9      1 2 3
[VARBLE INFO]
v
[HISTORY DATA]
0.5
35.00
36.00
37.00
38.00
39.00

[TIMESTEP]
1
[EOF]
"""


def main(command, corpus):
    def run(*words):
        subprocess.run([command, *map(str, words)], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def seed(target, name, content):
        if len(content) > MOST_BYTES:
            sys.exit("%s/%s has %d bytes" % (target, name, len(content)))
        folder = corpus / target
        folder.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(content)

    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        mesh, text, ctg, ofv = (folder / name for name in ("mesh.ofe", "mesh.json", "mesh.ctg", "mesh.ofv"))
        for name, content in MESHES.items():
            text.write_text(json.dumps({"format": "ofe-json", "version": 1, "nodes": CUBE, **content}))
            run("load", text, mesh)
            run("dump", mesh, "-o", text)
            seed("ofe", name, mesh.read_bytes())
            seed("json", name, text.read_bytes())
            if "elementsMoldBase" in content:
                run("ctg", mesh, ctg)
                seed("ctg", name, ctg.read_bytes())
            if name in CLOSED:
                run("ofv", ctg, ofv)
                seed("ofv", name, ofv.read_bytes())
        for name, elements in MSH_MESHES.items():
            for version in ("2.2", "4.1"):
                for binary in (False, True):
                    content = msh(elements, version, binary)
                    (folder / "mesh.msh").write_bytes(content)
                    run("import", folder / "mesh.msh", mesh)
                    seed("msh", "%s-%s-%s" % (name, version, "binary" if binary else "text"), content)
        for each in range(4):  # the first byte: how many sensors of each type the mesh has
            seed("snc", "sensors-%d" % each, bytes([each]) + SNC.encode())


if __name__ == "__main__":
    main(sys.argv[1], pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else pathlib.Path(__file__).parent / "corpus")
