#!/usr/bin/python3
"""Imports a mold, makes all six solver meshes, the CTG export and its OFV file with the orvmesh command, checks them
and prints what they hold.

Usage: demo_summary.py ORVMESH MESH.msh OUTPUT_FOLDER

Each file must pass `orvmesh check`. The files are read with read_ofe.py, and every block of each solver mesh is compared entry by entry with what
expected_blocks.py and expected_tables.py work out from the imported mesh. Exit code 1 when anything differs.
"""
import json
import os
import re
import subprocess
import sys
import time

import numpy as np

import demo_channels
import demo_heat
import demo_ofv
import demo_sensors
import expected_blocks
import expected_tables
import read_ofe

ELEMENT_BLOCKS = ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")
# Header fields that count the entries of a block, and the variants whose header rule means something else: the
# stream-line mesh copies the source's counts of mold and channel elements and writes none.
COUNTS = {4: "elementsPlastic", 5: "elementsMoldBase", 6: "elementsCoolChannel", 7: "elementSurfaces", 12: "nodes",
          126: "coolantChannelDiameters", 130: "coolantChannelLayout", 133: "moldMetal", 136: "coolingChannelSurface",
          137: "boundaryConditions", 138: "surfaceBoundaryConditions", 139: "surfaceBoundaryConditionNames",
          140: "badElementsPlastic", 141: "badElementsMoldBase", 142: "badElementsCoolChannel"}
COUNTS_OF_THE_SOURCE = {("stream-line", 5), ("stream-line", 6)}
FIRST_SENSOR_FIELD = 120  # kinds 1 to 6


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
    return {column: np.zeros((0, width) if isinstance(width, int) and width > 1 else 0, read_ofe.TYPES[kind])
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
    wanted = expected_blocks.BLOCKS[variant] | expected_tables.TABLES[variant]
    for name, columns in wanted.items():
        for column, values in columns(source).items():
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
        owner = source if (variant, field) in COUNTS_OF_THE_SOURCE else target
        count, found = entries(owner, name), target["header"]["words"][field]
        if found != count:
            yield f"header field {field} is {found}, {name} has {count} entries"
    for kind in range(1, 7):
        count, found = (target["sensors"]["type"] == kind).sum(), target["header"]["words"][FIRST_SENSOR_FIELD + kind - 1]
        if found != count:
            yield f"header field {FIRST_SENSOR_FIELD + kind - 1} is {found}, there are {count} sensors of kind {kind}"


def by_interface(surfaces):
    numbers, counts = np.unique(surfaces["interfaceId"], return_counts=True)
    return "  ".join(f"{n}: {c}" for n, c in zip(numbers, counts)) or "none"


def table_row(name, result, mesh, seconds):
    counts = [str(entries(mesh, block)) for block in ("nodes", *ELEMENT_BLOCKS)]
    return [name, result, *counts, by_interface(mesh["elementSurfaces"]),
            str(entries(mesh, "boundaryConditions")), f"{1000 * seconds:.0f} ms"]


def check_with_command(orvmesh, path, *options):
    """Documented properties of a solver mesh are notes; whatever else is found is our fault."""
    done = subprocess.run([orvmesh, "check", *options, path], capture_output=True, text=True)
    if done.returncode != 0:
        yield f"orvmesh check: exit code {done.returncode}\n{done.stdout}{done.stderr}"


def export_ctg(orvmesh, component, path):
    """The export, read back and checked by the command. Complaints."""
    run(orvmesh, "ctg", component, path)
    found = json.loads(run(orvmesh, "info", "--json", path)[0])
    boundaries = found["boundaries"]
    print(f"CTG export: {found['elements']} elements, {found['faces']['all']} faces, on boundaries " +
          ", ".join(f"{name}: {boundary['faces']}" for name, boundary in boundaries.items()) + "\n")
    return [f"{path}: no face is on the part"] if boundaries["plastic"]["faces"] == 0 else []


def print_table(head, rows, left):
    """left: places of the columns that stand at the left edge."""
    widths = [max(map(len, column)) for column in zip(head, *rows)]
    for row in [head, ["-" * w for w in widths], *rows]:
        cells = [c.ljust(w) if i in left else c.rjust(w) for i, (c, w) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())
    print()


def block_rows(meshes):
    """Entries of every block, a column per mesh; a dot for none."""
    for name, _ in read_ofe.BLOCKS.values():
        if name != "header":
            yield [name, *(str(entries(mesh, name) or ".") for mesh in meshes)]


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
    meshes = {"(imported)": source}
    complaints = [f"{component}: {text}" for text in [*check_import(source),
                                                                 *check_with_command(orvmesh, component)]]
    for variant in expected_blocks.BLOCKS:
        path = os.path.join(folder, f"{variant}.ofe")
        printed, seconds = run(orvmesh, "transfer", variant, component, path)
        target = meshes[variant] = read(path)
        result = re.search(r"\(result (-?\d+)\)", printed)
        rows.append(table_row(variant, result.group(1) if result else "?", target, seconds))
        found = [*check_blocks(variant, source, target), *check_header(variant, source, target),
                 *check_with_command(orvmesh, path, "--variant", variant)]
        complaints += [f"{path}: {text}" for text in found if text]
    head = ["variant", "result", "nodes", "plastic", "mold base", "channel", "surfaces by interface", "conditions", "time"]
    print_table(head, rows, (0, 6))
    print_table(["entries of", *meshes], list(block_rows(meshes.values())), (0,))
    history = os.path.join(os.path.dirname(mesh), "history.snc")
    if os.path.exists(history):
        complaints += demo_sensors.rewrite_history(orvmesh, component, history, folder)
    complaints += demo_channels.show_channels(orvmesh, component, folder)
    losses = os.path.join(os.path.dirname(mesh), "..", "heat", "losses.txt")
    if os.path.exists(losses):
        complaints += demo_heat.map_losses(orvmesh, [*options, mesh], losses, folder)
    ctg = os.path.join(folder, "mold.ctg")
    complaints += export_ctg(orvmesh, component, ctg)
    complaints += demo_ofv.make_ofv(orvmesh, component, ctg, folder)
    for text in complaints:
        print(f"demo: {text}", file=sys.stderr)
    if complaints:
        sys.exit(1)
    print(f"Every block of all {len(rows) - 1} solver meshes holds what its variant must write, the header counts "
          f"agree, and\n`orvmesh check` finds nothing wrong. The files are in {folder};\nmold.vtu, channels.vtu and "
          "temperature.vtu open in ParaView.")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
