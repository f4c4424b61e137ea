"""The benchmark programs of this folder, each against a peer in the same process, and what is asked of them."""
import json
import math
import subprocess

# Program, benchmark, counter, what it is a ratio to (or a rate), least, most.
ASKED = [
    ("ctg", "matchFaces/94", "ratio", "a bare node-bucket matcher", 0, 1.3),
    ("ctg", "writeFile/55", "ratio", "cp of the file", 0, 3),
    ("ctg", "formatIntegers", "MB/s", "integers as text", 500, math.inf),
    ("ctg", "formatDoubles", "MB/s", "doubles as text", 200, math.inf),
    ("dmp", "blockForm", "ratio", "cp of the file, for writing and reading", 0, 3),
    ("dmp", "textForm", "ratio", "fprintf and fscanf of the lines", 0, 1 / 3),
    ("octree", "randomPoints/1000000", "ratio", "plain nanoflann, building and a million queries", 0, 1.15),
    ("heat", "readTable/1000000", "MB/s", "COMSOL table read", 150, math.inf),
    ("channel", "extractSurface/100", "ratio", "reading the same blocks once", 0, 1.5),
    ("snc", "rewriteInMemory/10000", "MB/s", "text rewritten in memory", 200, math.inf),
]


def measure(folder):
    """Rows of (program, benchmark, value as text, what, limit as text) and whether a limit was missed."""
    rows, missed = [], False
    for program in dict.fromkeys(row[0] for row in ASKED):
        told = subprocess.run([f"{folder}/bench_{program}", "--benchmark_format=json"], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, check=True).stdout
        found = {entry["name"]: entry for entry in json.loads(told)["benchmarks"]}
        for _, name, counter, what, least, most in (row for row in ASKED if row[0] == program):
            entry = next(entry for key, entry in found.items() if key == name or key.startswith(name + "/"))
            value = entry[counter]
            good = least <= value <= most
            missed = missed or not good
            limit = f"at least {least:g}" if most == math.inf else f"at most {most:.3g}"
            rows.append((f"{program} {name}", f"{value:.3g}" + ("" if good else "!"),
                         what if counter == "ratio" else f"{counter}, {what}", limit))
    return rows, missed


def report(folder):
    """Prints the table; true when a limit was missed."""
    rows, missed = measure(folder)
    print("\nBenchmark programs; ! marks a missed limit\n")
    for name, value, what, limit in rows:
        print(f"{name:32}{value:>9}  {what} ({limit})")
    return missed
