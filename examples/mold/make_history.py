#!/usr/bin/python3
"""Makes an SNC sensor history for a component OFE file, numbered as the mesh joined with its part inserts.

Usage: make_history.py ORVMESH MESH.ofe OUT.snc [RECORDS]

Every sensor has a level of its own, five degrees above the one with the display number before, and swings with the
cycle: a history line that lands at another sensor is seen at once. Numbers of elements and nodes play no part.
"""
import json
import math
import subprocess
import sys

CYCLE = 8  # records


def temperature(display, record):
    return 30 + 5 * display + 2 * math.sin(2 * math.pi * record / CYCLE)


def joined_order(orvmesh, mesh):
    """The numbered sensors in the order of the joined mesh."""
    done = subprocess.run([orvmesh, "sensors", "list", "--json", mesh], stdout=subprocess.PIPE, check=True)
    sensors = [s for s in json.loads(done.stdout)["sensors"] if s["newNumber"]]
    return sorted(sensors, key=lambda s: s["newNumber"])


def history(sensors, records):
    yield from ("1", "[HEADER]", "temperatures of the mold's sensors", "[SENSOR INFO]", "type number x y z")
    for kind in range(1, 7):
        yield str(sum(s["newType"] == kind for s in sensors))
    for s in sensors:
        yield f"{s['newType']}  {s['display']}      " + " ".join(f"{x:g}" for x in s["position"])
    yield from ("[VARBLE INFO]", "1", "temperature degC", "[HISTORY DATA]")
    for record in range(records):
        yield f"{0.5 * record:g}"
        for s in sensors:
            yield f"{temperature(s['display'], record):.2f}"
        yield ""
    yield from ("[TIMESTEP]", str(records), "[EOF]")


def main(orvmesh, mesh, target, records="8"):
    with open(target, "w") as out:
        out.writelines(line + "\n" for line in history(joined_order(orvmesh, mesh), int(records)))


if __name__ == "__main__":
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    main(*sys.argv[1:])
