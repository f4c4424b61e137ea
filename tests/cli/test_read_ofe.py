"""scripts/read_ofe.py, the reader written from the format pages: values of a known mesh, and every fault it must see."""
import json
import os
import subprocess
import sys
import tempfile

ORVMESH, SOURCE = os.environ["ORVMESH"], os.environ["ORVMESH_SOURCE"]
sys.path.insert(0, f"{SOURCE}/scripts")
import read_ofe

MESH = {
    "format": "ofe-json", "version": 1, "header": {"fields": {"0": 14001, "29": 0.5}, "unit": "mm"},
    "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1]],
    "elementsPlastic": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 201, "value": 0.5}],
    "elementsMoldBase": [{"nodes": [1, 2, 3, 4], "a": 1, "b": 0, "value": 0},
                         {"nodes": [1, 2, 3, 4, 5], "a": 5002, "b": 0, "value": 0}],
    "elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1, "ownerCode": 2, "contactCode": 3, "boundaryType": 4,
                         "elementNo": 1, "tag": 5}],
    "surfaceBoundaryConditions": [{"surfaceNo": 1, "list": [7, 8]}],
    "surfaceBoundaryConditionNames": [{"name": "g1", "type": 7, "dictionary": {"THICKNESS": "2.5"}}],
    "coolantChannelLayers": [[1, 2, "water"]],
}


def expect(what, got, wanted):
    if got != wanted:
        sys.exit(f"{what}: {got}, not {wanted}")


def faulty(path, data):
    with open(path, "wb") as file:
        file.write(data)
    try:
        read_ofe.read(path)
    except read_ofe.Fault:
        return True
    return False


with tempfile.TemporaryDirectory() as folder:
    source, path, broken = (os.path.join(folder, name) for name in ("mesh.json", "mesh.ofe", "broken.ofe"))
    with open(source, "w") as file:
        json.dump(MESH, file)
    subprocess.run([ORVMESH, "load", source, path], check=True, stdout=subprocess.DEVNULL)

    mesh = read_ofe.read(path)
    expect("xyz", mesh["nodes"]["xyz"].tolist(), MESH["nodes"])
    expect("offsets", mesh["elementsMoldBase"]["offsets"].tolist(), [0, 4, 9])
    expect("fieldA", mesh["elementsMoldBase"]["fieldA"].tolist(), [1, 5002])
    expect("common count", mesh["elementsPlastic"]["offsets"].size, 0)
    expect("surface", [int(c.flat[-1]) for c in mesh["elementSurfaces"].values()], [3, 1, 2, 3, 4, 1, 5])
    expect("list", mesh["surfaceBoundaryConditions"]["list"].tolist(), [7, 8])
    expect("texts", mesh["surfaceBoundaryConditionNames"]["texts"].tobytes(), b"g1THICKNESS2.5")
    expect("layer", mesh["coolantChannelLayers"]["names"].tobytes(), b"water")
    expect("unit", mesh["header"]["unit"].tobytes(), b"mm")
    expect("scale", float(mesh["header"]["words"][29:30].view("<f4")[0]), 0.5)
    expect("empty block", mesh["sensors"], {})

    expect("checksum function", read_ofe.XXH3 is not None, True)
    with open(path, "rb") as file:
        sound = file.read()
    unseen = [i for i in range(0, len(sound), 5)
              if not faulty(broken, sound[:i] + bytes([sound[i] ^ 0x41]) + sound[i + 1:])]
    expect("unseen flipped bytes", unseen, [])
    expect("unseen truncations", [n for n in range(0, len(sound), 37) if not faulty(broken, sound[:n])], [])
    expect("an added byte is seen", faulty(broken, sound + b"\0"), True)

    reader = [f"{SOURCE}/scripts/read_ofe.py"]
    done = subprocess.run(reader + [path], capture_output=True, text=True)
    expect("result for a sound file", (done.returncode, "elementsMoldBase                       2" in done.stdout), (0, True))
    done = subprocess.run(reader + [path, broken], capture_output=True, text=True)
    expect("result for a broken file", (done.returncode, len(done.stderr.splitlines())), (1, 1))
