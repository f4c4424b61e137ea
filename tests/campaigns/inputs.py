"""What the campaigns start from: one small file of every kind, and every command that writes."""
import json
import os
import subprocess

ORVMESH = os.path.abspath(os.environ.get("ORVMESH", "build/release/src/cli/orvmesh"))
SOURCE = os.path.abspath(os.environ.get("ORVMESH_SOURCE", "."))
VARIANTS = ("channels", "hot-runner", "stream-line", "moldbase", "part-inserts", "part-inserts-channels")
LOG = "MeshTranslate.log"  # stands in the current folder while a transfer runs

MOLD = {
    "format": "ofe-json", "version": 1, "header": {"fields": {"0": 14001}, "source": "a", "unit": "mm"},
    "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1], [2, 0, 0.5]],
    "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201}],
    "elementsMoldBase": [{"nodes": [2, 3, 4, 5], "a": 5002, "b": 1}, {"nodes": [2, 5, 4, 6], "a": 1, "b": 1}],
    "elementsCoolChannel": [{"nodes": [1, 2, 3, 5], "a": 1, "b": 3}, {"nodes": [1, 2, 4, 6], "a": 2, "b": 4}],
    "elementSurfaces": [
        {"nodes": [2, 3, 4, 4], "interfaceId": 1, "elementNo": 1, "tag": 1},
        {"nodes": [2, 4, 5, 5], "interfaceId": 2, "elementNo": 1, "tag": 2},
        {"nodes": [2, 4, 3, 3], "interfaceId": 2, "elementNo": 1, "tag": 0},
        {"nodes": [1, 2, 4, 4], "interfaceId": 1, "boundaryType": 4, "elementNo": 1, "tag": 259},
        {"nodes": [2, 3, 5, 5], "interfaceId": 4, "contactCode": 1, "boundaryType": 3, "elementNo": 1, "tag": 512},
        {"nodes": [1, 2, 3, 3], "interfaceId": 4, "boundaryType": 3, "elementNo": 1, "tag": 1048579}],
    "coolantChannelLayout": [[1, 9, 9, 9, 1] + [0] * 15],
    "sensors": [{"type": 1, "ids": [1, 1, 0, 0], "position": [0.1, 0.1, 0.1]}],
    "surfaceBoundaryConditionNames": [{"name": "gate", "type": 7, "dictionary": {"THICKNESS": "2.5"}}],
    "moldMetalLayers": [[1, 2, "steel", 3, 4, 5, 6]]}

MSH = """$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
2
3 1 "part"
3 2 "moldbase"
$EndPhysicalNames
$Nodes
5
1 0 0 0
2 1 0 0
3 0 1 0
4 0 0 1
5 1 1 1
$EndNodes
$Elements
2
1 4 2 1 1 1 2 3 4
2 4 2 2 2 2 4 3 5
$EndElements
"""

DMP = """1
[HEADER]
1023 5
1 1 1
2 1
0 1
0 0
[NODE MAP]
1 10
2 -20
[ELEMENT PLASTIC MAP]
3
[ELEMENT MOLDBASE MAP]
4
[ELEMENT COOL CHANNEL MAP]
5
[ELEMENT COOLANT END MAP]
6 7
[ELEMENT COOL FACE TO LINE MAP]
[ELEMENT COOL LINE TO FACE MAP]
2 1 2 3 4
[SENSOR MAP]
[ELEMENT SURFACE MAP]]
[ELEMENT SURFACE 103104 MAP]]
[EOF]
"""

SNC = """9
[HEADER] some text
[SENSOR INFO]
type number x y z
1
0
0
0
0
0
1  1      0.1 0.1 0.1
[VARBLE INFO]
1
temperature degC
[HISTORY DATA]
0.5
35.00

[TIMESTEP]
1
[EOF]
"""

POINTS = "0 0 0 1.5\n1 1 1 -2\n"
LOSSES = "% Nodes: 2\n% x y z q\n0 0 0 10000\n0.1 0 0 20000\n"

# Name of the command: its words, what it writes.
COMMANDS = {
    "import": (["import", "mold.msh", "out.ofe", "--roles", "roles.json"], ["out.ofe"]),
    "load": (["load", "mold.json", "out.ofe"], ["out.ofe"]),
    **{variant: (["transfer", variant, "mold.ofe", "out.ofe"], ["out.ofe"]) for variant in VARIANTS},
    "transfer --dmp": (["transfer", "part-inserts", "mold.ofe", "out.ofe", "--dmp", "out.dmp"],
                       ["out.ofe", "out.dmp"]),
    "ctg": (["ctg", "mold.ofe", "out.ctg"], ["out.ctg"]),
    "dmp convert, text": (["dmp", "convert", "map.dmp", "out.dmp", "--version", "1022"], ["out.dmp"]),
    "dmp convert, block": (["dmp", "convert", "map.dmp", "out.dmp", "--version", "2004"], ["out.dmp"]),
    "dmp dump": (["dmp", "dump", "map.dmp", "-o", "out.json"], ["out.json"]),
    "dump": (["dump", "mold.ofe", "-o", "out.json"], ["out.json"]),
    "export": (["export", "mold.ofe", "out.vtu"], ["out.vtu", "out_surfaces.vtu"]),
    "ofv": (["ofv", "mold.ctg", "out.ofv"], ["out.ofv"]),
    "export, OFV": (["export", "mold.ofv", "out.vtu"], ["out.vtu"]),
    "snc": (["snc", "history.snc", "mold.ofe"], ["history.snc"]),
    "snc -o": (["snc", "history.snc", "mold.ofe", "-o", "out.snc"], ["out.snc"]),
    "channels, VTK": (["channels", "mold.ofe", "-o", "out.vtu"], ["out.vtu"]),
    "channels, STL": (["channels", "mold.ofe", "-o", "out.stl"], ["out.stl"]),
    "map nodes": (["map", "nodes", "mold.ofe", "--stl"], ["mold.ofe.CCNodeToMBNode.stl"]),
    "map result": (["map", "result", "mold.ofe", "points.txt", "-o", "out.vtu"], ["out.vtu", "out_surfaces.vtu"]),
    "heat": (["heat", "losses.txt", "mold.ofe", "-o", "out.vtu"], ["out.vtu", "out_surfaces.vtu"]),
}


def orvmesh(words, folder, env=None, **options):
    """The finished process, both outputs as bytes."""
    return subprocess.run([ORVMESH, *words], cwd=folder, env=env, stdin=subprocess.DEVNULL, capture_output=True,
                          check=False, timeout=300, **options)


def must(words, folder):
    done = orvmesh(words, folder)
    if done.returncode != 0:
        raise SystemExit(f"orvmesh {' '.join(words)}: exit code {done.returncode}\n{done.stderr.decode()}")


def put(folder, name, content):
    path = os.path.join(folder, name)
    with open(path, "wb" if isinstance(content, bytes) else "w") as file:
        file.write(content)
    return path


def small_inputs(folder):
    put(folder, "mold.json", json.dumps(MOLD))
    put(folder, "mold.msh", MSH)
    put(folder, "roles.json", '{"badQuality": 0.15}')
    put(folder, "map.dmp", DMP)
    put(folder, "history.snc", SNC)
    must(["load", "mold.json", "mold.ofe"], folder)
    make_others(folder)


def make_others(folder):
    put(folder, "points.txt", POINTS)
    put(folder, "losses.txt", LOSSES)
    must(["ctg", "mold.ofe", "mold.ctg"], folder)
    must(["ofv", "mold.ctg", "mold.ofv"], folder)


def example_inputs(folder):
    """The example mold, its history and a dump of its numbers."""
    mold = os.path.join(SOURCE, "examples", "mold")
    for name in ("mold.msh", "history.snc", "roles.json"):
        with open(os.path.join(mold, name), "rb") as file:
            put(folder, name, file.read())
    must(["import", "--roles", "roles.json", "mold.msh", "mold.ofe"], folder)
    must(["dump", "mold.ofe", "-o", "mold.json"], folder)
    make_others(folder)
    must(["transfer", "part-inserts", "mold.ofe", "solver.ofe", "--dmp", "map.dmp", "--dmp-version", "1023"], folder)


def contents(folder):
    """Name and bytes of every file; a folder's bytes are None."""
    found = {}
    for entry in os.scandir(folder):
        if entry.is_file(follow_symlinks=False):
            with open(entry.path, "rb") as file:
                found[entry.name] = file.read()
        else:
            found[entry.name] = None
    return found


def restore(folder, wanted):
    now = contents(folder)
    for name in now.keys() - wanted.keys():
        os.remove(os.path.join(folder, name))
    for name, content in wanted.items():
        if now.get(name) != content:
            put(folder, name, content)


def scratch_root():
    """Memory-backed where there is such a place: a campaign writes a file some ten thousand times."""
    return "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
