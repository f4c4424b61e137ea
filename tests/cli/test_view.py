"""info, dump, load and export as commands: exit codes, one-line errors, targets that stay as they were."""
import json
import os
import subprocess
import sys
import tempfile

from support import ORVMESH, orvmesh as run, read, small_files


def check(what, good, seen=""):
    if not good:
        sys.exit(f"{what}: {seen}")


def expect_error(code, text, *words, **options):
    done = run(*words, **options)
    lines = done.stderr.splitlines()
    check(f"exit code of {words}", done.returncode == code, f"{done.returncode} {done.stderr}")
    check(f"error of {words}", text in lines[0] and (code == 2 or len(lines) == 1), done.stderr)
    check(f"output of {words}", not done.stdout, done.stdout)


def expect_done(*words):
    done = run(*words)
    check(f"{words}", done.returncode == 0 and not done.stderr, f"{done.returncode} {done.stderr}")
    return done.stdout


def write(path, content):
    with open(path, "wb") as file:
        file.write(content if isinstance(content, bytes) else content.encode())
    return path


MESH = {"header": {"fields": {"0": 14002, "7": 5, "29": 0.5}, "unit": "mm"},
        "nodes": [[0, 0, 0], [2, 0, 0], [0, 2, 0], [0, 0, -2], [2, 2, 2]],
        "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201}, {"nodes": [1, 2, 3, 4], "a": 1, "b": 201},
                            {"nodes": [1, 2, 3, 4, 5], "a": 2, "b": 1}],
        "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 5002}, {"nodes": [1, 2, 3, 4], "a": 10901}],
        "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1, "boundaryType": 4},
                            {"nodes": [1, 2, 3, 4], "interfaceId": 1, "boundaryType": 4},
                            {"nodes": [1, 2, 3, 0], "interfaceId": 2}],
        "surfaceBoundaryConditions": [{"surfaceNo": 2, "list": [1]}],
        "boundaryConditions": [{"entityNo": 1, "type": 1}, {"entityNo": 1, "type": 77}],
        "badElementsPlastic": [[1, 1]], "sensors": [{"type": 3}, {"type": 3}],
        "moldMetalLayers": [[1, 1, "", 0, 0, 0, 0]]}


def check_info(ofe):
    info = json.loads(expect_done("info", "--json", ofe))
    plastic = info["components"]["plastic"]
    expected = [("version", 14002), ("writtenVersion", 14002), ("lengthFactor", 0.5), ("nodes", 5),
                ("boundingBox", [[0, 0, -1], [1, 1, 1]]), ("surfaces", 3), ("sensors", [0, 0, 2, 0, 0, 0]),
                ("boundaryConditions", {"??": 1, "EM": 1}), ("unit", "mm"),
                ("notes", ["header field 7 (m_HEADER_NElemS) is 5, the file holds 3"])]
    for key, value in expected:
        check(f"info {key}", info[key] == value, info[key])
    parts = [(p["a"], p["b"], p["role"], p["types"]["tetrahedra"], p["types"]["pyramids"]) for p in plastic["parts"]]
    check("info parts", parts == [(1, 201, "hot runner", 2, 0), (2, 1, "part", 0, 1)], parts)
    check("info bad", (plastic["elements"], plastic["bad"]) == (3, 1), plastic)
    roles = [p["role"] for p in info["components"]["mold"]["parts"]]
    check("info roles", roles == ["part insert", "heater"], roles)
    rows = [list(row.values()) for row in info["interfaces"]]
    check("info interfaces", rows == [[1, 4, 1, 1, 1], [2, 0, 1, 0, 0]], rows)
    text = expect_done("info", ofe)
    for part in ("14002, written as 14002", "0 0 -1 to 1 1 1", "hot runner", "note: header field 7", "mold metal layers"):
        check(f"info text lacks {part}", part in text, text)


def check_refused(folder, ofe):
    content = read(ofe)
    mesh = os.path.join(folder, "mesh.vtu")
    expect_done("export", ofe, mesh)
    target = write(os.path.join(folder, "target.vtu"), "old")
    bad = [(os.path.join(folder, "missing"), "cannot be read: No such file"), (folder, "is a directory"), (mesh, "is not an OFE"),
           (write(os.path.join(folder, "empty"), ""), "")]
    bad += [(write(os.path.join(folder, f"cut{size}"), content[:size]), "") for size in range(1, len(content), 997)]
    for path, text in bad:
        for words in (("info", path), ("dump", path), ("dump", path, "-o", target), ("export", path, target)):
            expect_error(1, f"orvmesh: {path}: {text}", *words)
    expect_error(1, f"{folder}: ", "load", folder, target)
    expect_error(1, f"{ofe}: top level: 0 (legal: an object)", "load", ofe, target)
    check("target", read(target) == b"old")


def check_targets(folder, text, ofe):
    dumped = expect_done("dump", ofe)
    big = write(os.path.join(folder, "big.json"), json.dumps({"nodes": [[1.5, 2.5, 3.5]] * 20000}))
    big_ofe = os.path.join(folder, "big.ofe")
    expect_done("load", big, big_ofe)
    target = write(os.path.join(folder, "t.vtu"), "old")
    surfaces = write(os.path.join(folder, "t_surfaces.vtu"), "old surfaces")
    before = sorted(os.listdir(folder))
    for words in (("dump", big_ofe, "-o", target), ("load", big, target), ("export", big_ofe, target)):
        expect_error(1, f"orvmesh: {target}: cannot be written: File too large", *words,
                     preexec_fn=small_files(4096))
        for place, reason in [(folder + "/no/x.vtu", "No such file"), ("/dev/full/x.vtu", "Not a directory")]:
            expect_error(1, f"orvmesh: {place}: cannot be written: {reason}", *words[:-1], place)
    os.remove(surfaces)
    os.mkdir(surfaces)
    expect_error(1, f"orvmesh: {surfaces}: cannot be written: Is a directory", "export", ofe, target)
    check("targets", read(target) == b"old" and sorted(os.listdir(folder)) == before, os.listdir(folder))
    with open("/dev/full", "w", encoding="utf-8") as full:
        done = subprocess.run([ORVMESH, "dump", big_ofe], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
    check("dump to a full disk", done.returncode == 1 and "standard output: cannot be written" in done.stderr)

    expect_done("dump", ofe, "-o", target)
    check("dump -o", read(target).decode() == dumped)
    expect_done("load", target, ofe)
    check("dump of a loaded dump", expect_done("dump", ofe) == dumped)
    expect_done("load", "--version", "2009", text, ofe)
    check("--version", json.loads(expect_done("info", "--json", ofe))["writtenVersion"] == 2009)
    expect_error(1, f"orvmesh: {text}: version 2013 (legal: 2002, ", "load", "--version", "2013", text, ofe)


def check_usage(ofe):
    for name in ("info", "dump", "load", "export"):
        check(f"{name} --help", f"Example: orvmesh {name} " in expect_done(name, "--help"))
        expect_error(2, "FILE", name)
    expect_error(2, "OUT must end in .vtu", "export", ofe, "out.vtk")
    expect_error(2, "--nothing", "info", ofe, "--nothing")


with tempfile.TemporaryDirectory() as top:
    source = write(os.path.join(top, "mesh.json"), json.dumps(MESH))
    file = os.path.join(top, "mesh.ofe")
    expect_done("load", source, file)
    check_info(file)
    check_refused(top, file)
    check_targets(top, source, file)
    check_usage(file)
