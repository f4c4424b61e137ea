#!/usr/bin/python3
"""Reads OFE files: a second reader, written from docs/formats/block-file.md and docs/formats/ofe.md alone.

    read_ofe.py FILE...     prints blocks and entry counts; exits 1 when a file has any fault

As a module: read(path) gives a dictionary of blocks, each a dictionary of numpy arrays by column name; columns of
n values per entry have the shape (entries, n). An empty block has no columns.
"""

import ctypes
import ctypes.util
import sys

import numpy as np

TYPES = {"I": "<i4", "L": "<i8", "F": "<f4", "D": "<f8", "C": "u1"}
POOL, OFFSETS, OFFSETS_OR_NONE, TEXT_OFFSETS, FREE = "pool", "offsets", "offsets or none", "text offsets", "free"
VERSIONS = {2002, *range(2008, 2013), 13001, *range(14001, 14004)}

ELEMENTS = [("I", "connectivity", POOL), ("I", "fieldA", 1), ("I", "fieldB", 1), ("F", "value", 1),
            ("L", "offsets", OFFSETS_OR_NONE)]
BAD = [("I", "elementNo", 1), ("I", "code", 1)]
GEOMETRY = [("I", "nodes", 4), ("I", "isPoint", 1), ("F", "position", 3), ("I", "codes", 2)]
LAYERS = [("C", "names", POOL), ("I", "values", 6), ("L", "offsets", OFFSETS)]
BLOCKS = {
    100: ("header", [("I", "words", FREE), ("I", "version", FREE), ("C", "source", FREE), ("C", "dateTime", FREE),
                     ("C", "unit", FREE), ("C", "remark", FREE)]),
    200: ("nodes", [("F", "xyz", 3)]),
    310: ("elementsPlastic", ELEMENTS),
    320: ("elementsMoldBase", ELEMENTS),
    330: ("elementsCoolChannel", ELEMENTS),
    400: ("elementSurfaces", [("I", "nodes", 4), ("I", "interfaceId", 1), ("I", "ownerCode", 1),
                              ("I", "contactCode", 1), ("I", "boundaryType", 1), ("I", "elementNo", 1),
                              ("I", "tag", 1)]),
    500: ("boundaryConditions", [("I", "entityNo", 1), ("I", "type", 1), ("F", "value", 1)]),
    610: ("badElementsPlastic", BAD),
    620: ("badElementsMoldBase", BAD),
    630: ("badElementsCoolChannel", BAD),
    710: ("coolantChannelDiameters", [("I", "nodes", 8), ("F", "diameter", 1)]),
    720: ("coolantChannelLines", [("F", "values", 4), ("I", "codes", 4)]),
    730: ("coolantChannelLayout", [("F", "values", 13), ("I", "codes", 7)]),
    800: ("sensors", [("I", "ids", 4), ("I", "type", 1), ("F", "position", 3)]),
    910: ("moldMetal", GEOMETRY),
    920: ("coolingChannelSurface", GEOMETRY),
    1010: ("surfaceBoundaryConditions", [("I", "list", POOL), ("I", "surfaceNo", 1), ("L", "offsets", OFFSETS)]),
    1020: ("surfaceBoundaryConditionNames", [("C", "texts", POOL), ("I", "typeAndDictionarySize", 2),
                                             ("L", "offsets", TEXT_OFFSETS)]),
    1110: ("moldMetalLayers", LAYERS),
    1120: ("partInsertLayers", LAYERS),
    1130: ("coolantChannelLayers", [("C", "names", POOL), ("I", "values", 2), ("L", "offsets", OFFSETS)]),
    1200: ("partingDirection", [("F", "direction", 3)]),
}


class Fault(Exception):
    """What is wrong with a file."""


def require(condition, text):
    if not condition:
        raise Fault(text)


def load_xxh3():
    """The checksum function of libxxhash; None where that is not installed."""
    try:
        function = ctypes.CDLL("libxxhash.so.0").XXH3_64bits_withSeed
    except (OSError, AttributeError):
        return None
    function.restype = ctypes.c_uint64
    function.argtypes = [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_uint64]
    return function


XXH3 = load_xxh3()


def check_sum(data, seed, expected, what):
    if XXH3 is not None:
        data = np.ascontiguousarray(data)
        require(XXH3(data.ctypes.data, data.size, seed) == expected, f"{what}: the checksum does not match")


def records(data, offset, dtype):
    return data[offset:offset + 32].view(dtype)[0]


BLOCK_RECORD = np.dtype([("id", "<i8"), ("offset", "<u8"), ("length", "<u8"), ("columns", "<u4"), ("zero", "<u4")])
COLUMN_RECORD = np.dtype([("type", "<u4"), ("zero", "<u4"), ("offset", "<u8"), ("count", "<u8"), ("hash", "<u8")])


def read_blocks(path):
    """The columns of every block, by id: lists of (type character, numpy array)."""
    try:
        data = np.fromfile(path, dtype="u1")
    except OSError as error:
        raise Fault(str(error.strerror)) from error
    require(data.size >= 64, "is cut off within the header")
    require(data[:8].tobytes() == b"0blocks\n", "is no block file")
    check_sum(data[:56], 0, int(data[56:64].view("<u8")[0]), "header")
    version, count = (int(v) for v in data[8:16].view("<u4"))
    size, directory, length, directory_hash, zero = (int(v) for v in data[16:56].view("<u8"))
    require(version == 1 and zero == 0, "container version or reserved field")
    require(size == data.size, f"has {data.size} bytes, its header says {size}")
    require(directory >= 64 and directory + length == size and length % 32 == 0, "directory does not end the file")
    check_sum(data[directory:], 0, directory_hash, "directory")

    blocks, at, end = {}, directory, 64
    for _ in range(count):
        require(at + 32 <= size, "directory is too short")
        block = {name: int(v) for name, v in zip(BLOCK_RECORD.names, records(data, at, BLOCK_RECORD))}
        at += 32
        what = f"block {block['id']}"
        require(block["id"] not in blocks, f"{what} is there twice")
        require(block["offset"] == end and block["zero"] == 0, f"{what} leaves a gap or overlaps")
        require(at + 32 * block["columns"] <= size and block["columns"] <= 65536, f"{what} has too many columns")
        columns = []
        for index in range(block["columns"]):
            record = {name: int(v) for name, v in zip(COLUMN_RECORD.names, records(data, at, COLUMN_RECORD))}
            at += 32
            columns.append(read_column(data, record, block, index, end, directory))
            end += -(-columns[-1][1].nbytes // 64) * 64
        require(end == block["offset"] + block["length"], f"{what} and its columns differ in length")
        blocks[block["id"]] = columns
    require(at == size and end == directory, "the blocks do not tile the file")
    return blocks


def read_column(data, record, block, index, offset, limit):
    what = f"block {block['id']} column {index}"
    kind = chr(record["type"]) if record["type"] < 128 else "?"
    require(kind in TYPES and record["zero"] == 0, f"{what} has an unknown type")
    require(record["offset"] == offset, f"{what} leaves a gap or overlaps")
    size = record["count"] * np.dtype(TYPES[kind]).itemsize
    padded = -(-size // 64) * 64
    require(offset + padded <= limit, f"{what} does not fit into the file")
    check_sum(data[offset:offset + padded], (block["id"] * 65536 + index) % 2**64, record["hash"], what)
    require(not data[offset + size:offset + padded].any(), f"{what} has padding that is not zero")
    return kind, data[offset:offset + size].view(TYPES[kind])


def shape_column(name, width, values, entries):
    """A column of `width` values per entry as an array of its shape; the others as they are."""
    if isinstance(width, int):
        require(values.size == entries * width, f"{name} has {values.size} values for {entries} entries")
        return values if width == 1 else values.reshape(entries, width)
    if width == OFFSETS or (width == OFFSETS_OR_NONE and values.size):
        require(values.size == entries + 1, f"{name} has {values.size} values for {entries} entries")
    return values


def check_pieces(name, layout, block, entries):
    pool_name, (_, offsets_name, kind) = layout[0][1], layout[-1]
    if kind not in (OFFSETS, OFFSETS_OR_NONE, TEXT_OFFSETS) or entries == 0:
        return
    pool, offsets = block[pool_name], block[offsets_name]
    least, most = (1, 8) if kind == OFFSETS_OR_NONE else (0, 2**31 - 1)
    if kind == OFFSETS_OR_NONE and offsets.size == 0:
        each, rest = divmod(pool.size, entries)
        require(rest == 0 and least <= each <= most, f"{name}: {pool.size} node numbers for {entries} elements")
        return
    require(offsets.size > 0 and offsets[0] == 0 and offsets[-1] == pool.size, f"{name}: offsets leave the pool")
    lengths = np.diff(offsets)
    require(((least <= lengths) & (lengths <= most)).all(), f"{name}: a piece has a wrong length")
    if kind == TEXT_OFFSETS:
        sizes = block["typeAndDictionarySize"][:, 1]
        require((sizes >= -1).all(), f"{name}: a dictionary has a wrong size")
        texts = entries + 2 * int(sizes[sizes > 0].sum(dtype=np.int64))
        require(texts == lengths.size, f"{name}: {lengths.size} texts where {texts} are needed")
    require(layout[0][0] != "C" or pool.all(), f"{name}: a zero byte in a text")


def read(path):
    """All blocks of an OFE file by name; raises Fault."""
    raw = read_blocks(path)
    require(set(raw) == set(BLOCKS), f"missing or unknown blocks: {sorted(set(raw) ^ set(BLOCKS))}")
    result = {}
    for block_id, (name, layout) in BLOCKS.items():
        columns = raw[block_id]
        require(not columns and name != "header" or [kind for kind, _ in columns] == [c[0] for c in layout],
                f"{name} has wrong columns")
        sizes = [values.size // width for (_, values), (_, _, width) in zip(columns, layout) if isinstance(width, int)]
        entries = sizes[0] if sizes else 0
        block = {column: shape_column(f"{name} {column}", width, values, entries)
                 for (_, values), (_, column, width) in zip(columns, layout)}
        if block:
            check_pieces(name, layout, block, entries)
        result[name] = block
    header = result["header"]
    require(header["words"].size == 160 and header["version"].size == 1, "header has a wrong number of words")
    require(int(header["version"][0]) in VERSIONS, f"version {header['version'][0]} is unknown")
    return result


def entry_count(name, block):
    """Number of entries of a block that read() gave."""
    layout = next(columns for block_name, columns in BLOCKS.values() if block_name == name)
    return next((len(block[column]) for _, column, width in layout if isinstance(width, int) and block), 0)


def main(paths):
    faults = 0
    for path in paths:
        try:
            mesh = read(path)
        except Fault as fault:
            print(f"read_ofe: {path}: {fault}", file=sys.stderr)
            faults += 1
            continue
        print(f"{path}: version {mesh['header']['version'][0]}" + ("" if XXH3 else ", checksums not verified"))
        for name, block in mesh.items():
            if name != "header":
                print(f"  {name:30}{entry_count(name, block):10}")
    return 1 if faults or not paths else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
