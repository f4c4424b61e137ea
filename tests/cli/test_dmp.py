"""dmp info, dump and convert: what they print, what they warn of, exit codes, targets that stay as they were."""
import json
import os
import sys
import tempfile

from support import orvmesh, read

HEADER = "1\n[HEADER]\n1023 5\n1 1 1\n2 1\n2 1\n1 9\n"
TEXT = HEADER + """[NODE MAP]
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
8
[ELEMENT SURFACE MAP]]
[ELEMENT SURFACE 103104 MAP]]
[EOF]
"""
BLOCKS = {"nodeMap": [[1, 10], [2, -20]], "elementPlasticMap": [3], "elementMoldBaseMap": [4],
          "elementCoolChannelMap": [5], "elementCoolantEndMap": [[6, 7]], "elementCoolFaceToLineMap": [],
          "elementCoolLineToFaceMap": [[[1, 2], [3, 4]]], "sensorMap": [8], "elementSurfaceMap": [],
          "elementSurface103104Map": []}


def run(code, *words):
    done = orvmesh("dmp", *words)
    if done.returncode != code:
        sys.exit(f"{words}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout, done.stderr


def check(what, good, seen=""):
    if not good:
        sys.exit(f"{what}: {seen}")


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


def blocks_of(path):
    dump = json.loads(run(0, "dump", path)[0])
    return dump["header"], {key: dump[key] for key in BLOCKS if key in dump}


def check_convert(source, target):
    _, warnings = run(0, "convert", source, target, "--version", "2001")
    expected = ["elementCoolLineToFaceMap: 1 of 1 lines and 1 of 2 items are copied: the text form gives back half",
                "sensorMap: 0 of 1 entries are copied: convert leaves this block out",
                "elementCoolChannelMap: 1 entries come back as 2 entries: the block form counts it by the face-to-line",
                "header value 7 (2) has no place in version 2001"]
    for text in expected:
        check("warning", f"orvmesh: {target}: warning: {text}" in warnings, warnings)
    header, blocks = blocks_of(target)
    copied = dict(BLOCKS, elementCoolChannelMap=[5, 0], elementCoolLineToFaceMap=[[[1, 2]]], sensorMap=[])
    del copied["elementCoolFaceToLineMap"]
    check("copied blocks", blocks == copied, blocks)
    check("copied header", list(header.values()) == [2001, 5, 1, 1, 1, 2, 1], header)
    check("info of the copy", "version  2001, block form" in run(0, "info", target)[0])


def check_refused(folder, source):
    target = write(os.path.join(folder, "target"), "old")
    bad = {"": "is no mapping dump", "1\n[HEADER]\n1021 0\n[": "has version 1021 (legal: 1020, 1022, 1023, 2001",
           HEADER: "has no complete header", TEXT.replace("3\n[EL", "x\n[EL"): "elementPlasticMap[0] is no 32-bit integer",
           TEXT.replace("2 -20", "2"): "nodeMap[1] is not two", TEXT.replace("SENSOR", "SENSE"): "unknown heading [SENSE MAP]",
           TEXT.replace(" 4\n[SEN", "\n[SEN"): "elementCoolLineToFaceMap[0] has fewer items", TEXT[:-6]: "is cut off"}
    for text, error in bad.items():
        path = write(os.path.join(folder, "bad"), text)
        for words in (("info", path), ("dump", path), ("dump", path, "-o", target), ("convert", path, target)):
            out, message = run(1, *words)
            check(f"{words}", message.startswith(f"orvmesh: {path}: {error}") and not out, f"{out}{message}")
    for words, error in ((("--version", "1021"), "cannot be written in version 1021 (legal: 1020"), ((), "")):
        place = target if words else folder + "/no/target"
        message = run(1, "convert", source, place, *words)[1]
        check("target", message.startswith(f"orvmesh: {place}: {error or 'cannot be written'}"), message)
    check("old target", read(target) == b"old")
    check("folder", sorted(os.listdir(folder)) == ["bad", "copy", "map.dmp", "target"], os.listdir(folder))


with tempfile.TemporaryDirectory() as top:
    dumped = write(os.path.join(top, "map.dmp"), TEXT)
    check("dump", blocks_of(dumped)[1] == BLOCKS, blocks_of(dumped))
    table = run(0, "info", dumped)[0]
    check("info", "version  1023, text form\n" in table and "note: sensorMap: 0 of 1 entries" in table, table)
    check_convert(dumped, os.path.join(top, "copy"))
    check_refused(top, dumped)
    for verb in ("info", "dump", "convert"):
        check(f"{verb} --help", f"Example: orvmesh dmp {verb} " in run(0, verb, "--help")[0])
    run(2)
    run(2, "convert", dumped)
