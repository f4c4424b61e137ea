"""Mapping dumps (DMP files)."""
from __future__ import annotations

from os import PathLike
from typing import Any, Dict, List, Mapping, Optional, Union

import numpy as np

from . import _orvmesh, columns

Path = Union[str, "PathLike[str]"]
BLOCKS: Dict[str, int] = dict(_orvmesh.dump_blocks())


class Dump:
    """A mapping dump: how the numbers of one mesh map onto another. docs/formats/dmp.md is its page.

    version       1020, 1022, 1023 (text), 2001, 2003, 2004 or 2005 (block)
    header        int32 (11,): version, a carried value, counts, a carried value; 0 beyond what the version has
    blocks        dict of int32 arrays, the caller's: (n,) or, for nodeMap, elementCoolantEndMap and
                  elementCoolLineToFaceMap, (n, 2)
    line_offsets  int64 (lines + 1,), where each line of elementCoolLineToFaceMap begins among its pairs
    notes         values in the file that do not go together, a line each
    """

    def __init__(self, version: int = 2004, blocks: Optional[Mapping[str, Any]] = None, header: Optional[Any] = None,
                 line_offsets: Optional[Any] = None, notes: Optional[List[str]] = None) -> None:
        """A dump of arrays: int32 of shape (n,) or (n, 2) by block name; blocks that are left out are empty.

        Raises Error (code "argument") for a block that there is not, or other shapes.
        """
        given = dict(blocks or {})
        unknown = sorted(set(given) - set(BLOCKS))
        if unknown:
            raise columns.fail(f"{unknown[0]}: no block of a mapping dump (legal: {', '.join(BLOCKS)})")
        self.version = version
        self.header = columns.exact(np.zeros(11, np.int32) if header is None else header, np.int32, 1, "header")
        self.blocks = {name: columns.exact(given.get(name, np.empty((0,), np.int32)), np.int32, width, name)
                       for name, width in BLOCKS.items()}
        self.line_offsets = columns.exact([0] if line_offsets is None else line_offsets, np.int64, 1, "line_offsets")
        self.notes = notes or []


def read_dmp(path: Path) -> Dump:
    """Reads a mapping dump of either form, whatever stands in it; arrays of shape (n,) or (n, 2). Raises Error."""
    return Dump(**_orvmesh.read_dmp(path))


def write_dmp(path: Path, dump: Dump, version: Optional[int] = None) -> None:
    """Writes a mapping dump in its version or the one given; complete or not at all.

    Arrays have the shapes (n,) and (n, 2) of Dump. Counts in the header that are too small for their block are raised.
    Raises Error: "argument" for a version that cannot be written or blocks that cannot stand together in it, "target".
    """
    _orvmesh.write_dmp(path, dump.version if version is None else version, dump.header, dump.blocks, dump.line_offsets)


def convert_dmp(source: Path, target: Path, version: int = 2004) -> List[str]:
    """Copies a mapping dump into another version, as ``orvmesh dmp convert`` does; what the copy lacks, a line each.

    The sensor map and the surface maps are never copied. Raises Error.
    """
    return _orvmesh.convert_dmp(source, target, version)
