"""Files in and out."""
from __future__ import annotations

import json
from os import PathLike
from typing import Any, Dict, Optional, Tuple, Union

from . import _orvmesh
from .mesh import Header, Mesh

Path = Union[str, "PathLike[str]"]


def read(path: Path) -> Mesh:
    """Opens an OFE file: every checksum is verified and every number proven, then arrays lie over the mapped file.

    The arrays of the mesh are read-only views, float32 (N, 3) for nodes, node numbers from 1, lengths as the file has
    them; each keeps the mapping alive. Raises Error (code "source", entity the entry at fault).
    """
    return Mesh._of_file(_orvmesh.read_mesh(path))


def write(path: Path, mesh: Union[Mesh, Dict[str, Any]], update_counts: Optional[bool] = None) -> None:
    """Writes an OFE file, complete or not at all; path may be the file that the mesh was read from.

    mesh is a Mesh, or a dict of blocks as Mesh takes it (shapes (N, 3), (n,), (n, width)). A mesh as it was read is
    written with the header as it stands, a replace()d one with those counts among the header's words brought up to date
    that its new arrays change, one of arrays alone with all of them; update_counts True means all, False none. What a reader would refuse is refused here: raises Error, code "argument" with the
    place in the arrays (counted from 0) as entity, or "target". Takes the mesh's size in memory for the time.
    """
    if not isinstance(mesh, Mesh):
        mesh = Mesh(mesh)
    header: Header = mesh.header
    update = mesh._before is not mesh.blocks if update_counts is None else update_counts
    _orvmesh.write_mesh(path, header.words, header.version, header.strings(), mesh.blocks, update,
                        mesh._before if update_counts is None else None)


def dump(path: Path) -> Dict[str, Any]:
    """The content of an OFE file as a dict, in the form of docs/formats/ofe-json.md (lists, no arrays).

    Numbers count from 1, lengths are the file's own; the dict is the caller's. Raises Error (code "source").
    """
    return json.loads(_orvmesh.dump_json(path))


def load(content: Union[str, Dict[str, Any]], target: Path, version: Optional[int] = None) -> None:
    """Writes the OFE file that a dict, or a JSON text, describes; the inverse of dump().

    version: the version it is written as; None for the one that follows from header field 0. The target appears
    complete or not at all. Raises Error (code "argument" with the place, or "target").
    """
    text = content if isinstance(content, str) else json.dumps(content)
    _orvmesh.load_json(text, target, version)


def import_msh(mesh: Path, target: Path, roles: Optional[Path] = None, scale: float = 1,
               merge: Optional[float] = None, drop_unused: bool = False) -> Dict[str, Any]:
    """Turns a Gmsh MSH file (2.2 or 4.1) into a component OFE file, as ``orvmesh import`` does; its report as a dict.

    roles: JSON file with roles of groups; scale: model units per length of the mesh, for the header; merge: joins nodes
    at most so far apart (the mesh's lengths); drop_unused: leaves out nodes of no element. Raises Error.
    """
    return json.loads(_orvmesh.import_msh(mesh, target, roles, scale, merge, drop_unused))


def export_vtu(source: Path, target: Path) -> Tuple[str, str]:
    """Writes an OFE file as VTK XML: volume elements to target, surfaces to NAME_surfaces.vtu; returns both paths.

    Coordinates are in model units. Both files appear complete or not at all. Raises Error.
    """
    return _orvmesh.export_vtu(source, target)
