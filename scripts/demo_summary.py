#!/usr/bin/python3
"""Imports a mold, makes all six solver meshes with the orvmesh command, checks them and prints one table.

Usage: demo_summary.py ORVMESH MESH.msh OUTPUT_FOLDER

The files are read with read_ofe.py, and every block of each solver mesh is compared entry by entry with what
expected_blocks.py works out from the imported mesh. Exit code 1 when anything differs.
"""
import os
import re
import subprocess
import sys
import time

import numpy as np

import expected_blocks
import read_ofe

ELEMENT_BLOCKS = ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")
# Header fields that count the entries of a block, and the variants whose header rule means something else: the
# stream-line mesh copies the source's counts of mold and channel elements and writes none.
COUNTS = {4: "elementsPlastic", 5: "elementsMoldBase", 6: "elementsCoolChannel", 7: "elementSurfaces", 12: "nodes"}
COUNTS_OF_THE_SOURCE = {("stream-line", 5), ("stream-line", 6)}
# Counted in the header, not written yet.
NOT_WRITTEN = {("moldbase", 7)}


def run(*words):
    """Standard output and wall time of a command that must succeed."""
    start = time.perf_counter()
    done = subprocess.run(words, stdout=subprocess.PIPE, text=True)
    if done.returncode != 0:
        sys.exit(f"demo: {' '.join(words)}: exit code {done.returncode}")
    return done.stdout, time.perf_counter() - start


def entries(mesh, name):
    return read_ofe.entry_count(name, mesh[name])


def empty_columns(layout):
    return {column: np.zeros((0, width) if width in (3, 4, 7, 13) else 0, read_ofe.TYPES[kind])
            for kind, column, width in layout}


def read(path):
    """Columns as expected_blocks.py wants them: empty blocks with their columns, node counts in place of offsets, a
    triangle's third node as its fourth."""
    mesh = read_ofe.read(path)
    for name, layout in read_ofe.BLOCKS.values():
        mesh[name] = mesh[name] or empty_columns(layout)
    for name in ELEMENT_BLOCKS:
        block, count = mesh[name], len(mesh[name]["fieldA"])
        offsets = block.pop("offsets")
        same = len(block["connectivity"]) // max(count, 1)
        block["counts"] = np.diff(offsets) if len(offsets) else np.full(count, same)
    nodes = mesh["elementSurfaces"]["nodes"] = mesh["elementSurfaces"]["nodes"].copy()
    nodes[:, 3] = np.where(nodes[:, 3] == 0, nodes[:, 2], nodes[:, 3])
    return mesh


def first_difference(name, column, found, wanted):
    wanted = np.asarray(wanted)
    if column == "tag":
        found, wanted = found.astype(np.int64) & 0xFFFFFFFF, wanted.astype(np.int64) & 0xFFFFFFFF
    if found.shape != wanted.shape:
        return f"{name}: {len(found)} values of {column} where the variant writes {len(wanted)}"
    differs = np.unique(np.nonzero(found != wanted)[0])
    if not len(differs):
        return None
    at = differs[0]
    return f"{name}: {column} of entry {at + 1} is {found[at]} instead of {wanted[at]} ({len(differs)} differ)"


def check_blocks(variant, source, target):
    wanted = expected_blocks.expected(variant, source)
    for name, columns in wanted.items():
        for column, values in columns.items():
            yield first_difference(name, column, target[name][column], values)
    for name in target.keys() - wanted.keys() - {"header"}:
        if entries(target, name):
            yield f"{name}: {entries(target, name)} entries in a block that the variant leaves empty"


def check_import(source):
    for interface, wanted, found in expected_blocks.imported_faces(source):
        if not np.array_equal(wanted, found):
            yield f"interface {interface}: {len(found)} surface elements, the volume elements have {len(wanted)} such faces"


def check_header(variant, source, target):
    for field, name in COUNTS.items():
        if (variant, field) in NOT_WRITTEN:
            continue
        owner = source if (variant, field) in COUNTS_OF_THE_SOURCE else target
        count, found = entries(owner, name), target["header"]["words"][field]
        if found != count:
            yield f"header field {field} is {found}, {name} has {count} entries"


def by_interface(surfaces):
    numbers, counts = np.unique(surfaces["interfaceId"], return_counts=True)
    return "  ".join(f"{n}: {c}" for n, c in zip(numbers, counts)) or "none"


def table_row(name, result, mesh, seconds):
    counts = [str(entries(mesh, block)) for block in ("nodes", *ELEMENT_BLOCKS)]
    return [name, result, *counts, by_interface(mesh["elementSurfaces"]),
            str(entries(mesh, "boundaryConditions")), f"{1000 * seconds:.0f} ms"]


def print_table(rows):
    head = ["variant", "result", "nodes", "plastic", "mold base", "channel", "surfaces by interface", "conditions",
            "time"]
    widths = [max(map(len, column)) for column in zip(head, *rows)]
    for row in [head, ["-" * w for w in widths], *rows]:
        cells = [c.ljust(w) if i in (0, 6) else c.rjust(w) for i, (c, w) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())


def main(orvmesh, mesh, folder):
    os.makedirs(folder, exist_ok=True)
    component = os.path.join(folder, "mold.ofe")
    roles = os.path.join(os.path.dirname(mesh), "roles.json")
    options = ["--roles", roles] if os.path.exists(roles) else []
    report, seconds = run(orvmesh, "import", *options, mesh, component)
    print(report)
    run(orvmesh, "export", component, os.path.join(folder, "mold.vtu"))
    source = read(component)
    rows = [table_row("(imported)", "", source, seconds)]
    complaints = [f"{component}: {text}" for text in check_import(source)]
    for variant in expected_blocks.BLOCKS:
        path = os.path.join(folder, f"{variant}.ofe")
        printed, seconds = run(orvmesh, "transfer", variant, component, path)
        target = read(path)
        result = re.search(r"\(result (-?\d+)\)", printed)
        rows.append(table_row(variant, result.group(1) if result else "?", target, seconds))
        found = [*check_blocks(variant, source, target), *check_header(variant, source, target)]
        complaints += [f"{path}: {text}" for text in found if text]
    print_table(rows)
    for text in complaints:
        print(f"demo: {text}", file=sys.stderr)
    if complaints:
        sys.exit(1)
    print(f"\nEvery block of all {len(rows) - 1} solver meshes holds what its variant must write, and the header counts "
          f"agree.\nThe files are in {folder}; mold.vtu opens in ParaView.")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
