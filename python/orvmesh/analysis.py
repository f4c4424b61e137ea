"""Solver meshes, checks and heat sources."""
from __future__ import annotations

from os import PathLike
from typing import Any, Dict, List, NamedTuple, Optional, Tuple, Union

import numpy as np

from . import _orvmesh

Path = Union[str, "PathLike[str]"]

VARIANTS: Tuple[str, ...] = tuple(_orvmesh.variant_names())


class Transfer(NamedTuple):
    """What a transfer did. Arrays are int32 and keep their memory alive; numbers count from 1.

    code            result of the operation, 1 or more (part-inserts-channels: 1 no channels, 2 no inserts, 3 both)
    warnings        what was noticed and let pass, a line each
    dropped         what of the source the target does not hold: "WHICH: COUNT" each
    numbers         dict of read-only arrays: "nodes", "plastic", "mold", "channel", "surfaces", "sensors", each (n,):
                    entry i - 1 is the number in the target of the source's number i, 0 when it is not there;
                    "channel_ends", (k,): surface numbers of the source's channel ends
    node_types      (N,), type 0 to 12 of each node of the source; (0,) unless a part-insert variant ran
    shared_nodes    (k,), nodes that part and inserts share
    block_materials (b,), material of each mold block
    heater_nodes, heater_face_nodes     (k,), node lists of the channel and hot-runner variants
    coolant_groups, heater_groups       counts of groups
    """
    code: int
    warnings: List[str]
    dropped: List[str]
    numbers: Dict[str, np.ndarray]
    node_types: np.ndarray
    shared_nodes: np.ndarray
    block_materials: np.ndarray
    heater_nodes: np.ndarray
    heater_face_nodes: np.ndarray
    coolant_groups: int
    heater_groups: int


def transfer(variant: str, source: Path, target: Path, stl: bool = False) -> Transfer:
    """Assembles a solver mesh (one of VARIANTS) from a component OFE file; the target appears complete or not at all.

    The bytes written are those of ``orvmesh transfer``. stl: moldbase draws its faces beside the source. Arrays of the
    result have shape (n,), numbers from 1. Transfers of several threads take turns, since each keeps a log in the
    current directory while it runs. Raises Error: "source", "target", "nothing-to-do" or "argument".
    """
    return Transfer(**_orvmesh.transfer_mesh(variant, source, target, stl))


def export_ctg(source: Path, target: Path) -> None:
    """Writes the mold elements as a CTG text mesh; the target appears complete or not at all.

    Counts of its passes go to standard output. Raises Error.
    """
    _orvmesh.export_ctg(source, target)


def node_types(source: Path) -> np.ndarray:
    """Types 0 to 12 of all nodes in the part-insert analysis, int32 (N,), node n at n - 1; a new array. Raises Error."""
    return _orvmesh.node_types(source)


class Entity(NamedTuple):
    """One thing that a finding is about: its kind in words, its number from 1 in the file (0 for none), the detail (what
    is wrong with it), and its position, (x, y, z) in model units or None."""
    kind: str
    number: int
    detail: str
    position: Optional[Tuple[float, float, float]]


class Finding(NamedTuple):
    """What is wrong: code and severity ("error", "warning", "note"), entity_count, the first few entities,
    its meaning, an advice, and the reason why it is a note where it usually is more."""
    code: str
    severity: str
    entity_count: int
    entities: List[Entity]
    meaning: str
    advice: str
    reason: str


class CheckReport(NamedTuple):
    """Outcome of a check: sound is True without errors and warnings; refused when the reader refuses the file. Counts of
    nodes, elements (plastic, mold, channel) and surfaces; findings, errors first; explained_by, the variants in which
    all of them would be notes; and the whole as text."""
    sound: bool
    refused: bool
    nodes: int
    elements: Tuple[int, int, int]
    surfaces: int
    findings: List[Finding]
    explained_by: List[str]
    text: str


def _finding(content: Dict[str, Any]) -> Finding:
    for entity in content["entities"]:
        entity["position"] = entity["position"] and tuple(entity["position"])
    content["entities"] = [Entity(**entity) for entity in content["entities"]]
    return Finding(**content)


def check(path: Path, variant: Optional[str] = None) -> CheckReport:
    """Looks for what is wrong with an OFE file: a component mesh, or the solver mesh of the variant.

    Numbers count from 1, positions are in model units. A file that is no sound OFE file raises Error (code "source").
    """
    content: Dict[str, Any] = _orvmesh.check_mesh(path, variant)
    content["findings"] = [_finding(finding) for finding in content["findings"]]
    return CheckReport(**content)


class HeatSource(NamedTuple):
    """A heat source on the nodes of a mesh; float64 arrays of shape (N,), node n at n - 1, the caller's.

    source      as the analysis takes it: the loss times -10^7
    loss        W/cm2
    distance    from the node to its point in cm, NaN where there is none
    rows, announced     rows of the table, and as many as its header says
    mapped, not_finite, on_empty_rows   counts of nodes: with a point; of these with a value that is not finite; with a
                row that is missing or incomplete
    unit_mistake        factor by which the points look too large for the mesh (1000: mm for m ...), 0 when they do not
    """
    source: np.ndarray
    loss: np.ndarray
    distance: np.ndarray
    rows: int
    announced: int
    mapped: int
    not_finite: int
    on_empty_rows: int
    unit_mistake: float


def heat_source(table: Path, mesh: Path) -> HeatSource:
    """Maps a COMSOL text table of surface losses (x, y, z in m, W/m2) onto the nodes of an OFE file (model units are cm).

    Each node takes the value of its nearest point, of equally near ones the first. Arrays of the result have shape
    (N,). Raises Error (code "source").
    """
    return HeatSource(**_orvmesh.heat_source(table, mesh))
