"""The demo's sensor step: rewrites an SNC history from the joined mesh's sensor numbers to the mesh's own."""
import json
import os
import subprocess


def first_record(path):
    """Sensor numbers and first history values of an SNC file, in its order."""
    with open(path) as text:
        lines = text.read().split("\n")
    sensors = next(i for i, line in enumerate(lines) if "[SENSOR INFO]" in line) + 2
    count = sum(int(line) for line in lines[sensors:sensors + 6])
    values = next(i for i, line in enumerate(lines) if "[HISTORY DATA]" in line) + 2
    displays = [int(line.split()[1]) for line in lines[sensors + 6:sensors + 6 + count]]
    return displays, lines[values:values + count]


def rewrite_history(orvmesh, component, history, folder):
    """Rewrites `history` for the mesh `component` into the folder and prints old and new numbers; yields what is wrong:
    a sensor that is not where the mesh has it, or that lost its values."""
    target = os.path.join(folder, "history.snc")
    done = subprocess.run([orvmesh, "snc", history, component, "-o", target], stdout=subprocess.PIPE, text=True)
    if done.returncode != 0:
        yield f"{history}: not rewritten"
        return
    listed = subprocess.run([orvmesh, "sensors", "list", "--json", component], stdout=subprocess.PIPE, check=True)
    sensors = [s for s in json.loads(listed.stdout)["sensors"] if s["number"]]
    before, after = dict(zip(*first_record(history))), first_record(target)
    print("sensor  lies in            in the joined mesh  in the mesh  first value")
    for s, display, value in zip(sensors, *after):
        print(f"{s['display']:>6}  {s['component']:<18} {s['newNumber']:>4} of type {s['newType']:<5} "
              f"{s['number']:>4} of type {s['type']}  {value:>11}")
        if display != s["display"] or value != before[display]:
            yield f"{target}: sensor {s['number']} is {display} with {value}, the mesh has {s['display']} there"
    if len(sensors) != len(before) or len(after[0]) != len(before):
        yield f"{target}: {len(after[0])} sensors, the mesh has {len(sensors)} and {history} {len(before)}"
    print(done.stdout)
