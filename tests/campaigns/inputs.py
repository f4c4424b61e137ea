"""What the campaigns start from: one small file of every kind, and every command that writes."""
import os
import shutil
import subprocess

ORVMESH = os.path.abspath(os.environ.get("ORVMESH", "build/release/src/cli/orvmesh"))
SOURCE = os.path.abspath(os.environ.get("ORVMESH_SOURCE", "."))
VARIANTS = ("channels", "hot-runner", "stream-line", "moldbase", "part-inserts", "part-inserts-channels")
DATA = os.path.join(os.path.dirname(__file__), "data")
LOG = "MeshTranslate.log"  # stands in the current folder while a transfer runs

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
    shutil.copytree(DATA, folder, dirs_exist_ok=True)
    must(["load", "mold.json", "mold.ofe"], folder)
    make_finite_volumes(folder)


def make_finite_volumes(folder):
    must(["ctg", "mold.ofe", "mold.ctg"], folder)
    must(["ofv", "mold.ctg", "mold.ofv"], folder)


def example_inputs(folder):
    """The example mold, its history and a dump of its numbers."""
    mold = os.path.join(SOURCE, "examples", "mold")
    for place, names in ((mold, ("mold.msh", "history.snc", "roles.json")), (DATA, ("points.txt", "losses.txt"))):
        for name in names:
            shutil.copyfile(os.path.join(place, name), os.path.join(folder, name))
    must(["import", "--roles", "roles.json", "mold.msh", "mold.ofe"], folder)
    must(["dump", "mold.ofe", "-o", "mold.json"], folder)
    make_finite_volumes(folder)
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
