"""The surface of the cooling channels."""
from __future__ import annotations

from os import PathLike
from typing import Any, Dict, List, NamedTuple, Union

import numpy as np

from . import _orvmesh

Path = Union[str, "PathLike[str]"]


class ChannelMarkers(NamedTuple):
    """Where coolant and heaters begin and end: kinds int32 (m,), 2 coolant inlet, 3 outlet, 4 heater inlet; positions
    float64 (m, 3) and diameters float64 (m,) in the file's lengths."""
    kinds: np.ndarray
    positions: np.ndarray
    diameters: np.ndarray


class ChannelSurface(NamedTuple):
    """Surface mesh of the channels; new arrays, the caller's.

    group_count     channel groups as the header counts them
    points          float32 (N, 3), model units
    node_numbers    int32 (N,), number of each point in the file, from 1
    faces           int32 (F, 4), points from 1 (row - 1 into points), a triangle's third twice; 0 for a missing node
    groups          int32 (F,)
    corners         uint8 (F,), 3 or 4
    interfaces      uint8 (F,), 3 wall, 4 end or hose
    kinds           uint8 (F,): 1 coolant, 2 heater, 3 hose, 0 other
    end_codes       uint8 (F,)
    markers         see ChannelMarkers
    """
    group_count: int
    points: np.ndarray
    node_numbers: np.ndarray
    faces: np.ndarray
    groups: np.ndarray
    corners: np.ndarray
    interfaces: np.ndarray
    kinds: np.ndarray
    end_codes: np.ndarray
    markers: ChannelMarkers


def channel_surface(path: Path) -> ChannelSurface:
    """The surface mesh of the cooling channels of an OFE file: points (N, 3), faces (F, 4). Raises Error ("source")."""
    content: Dict[str, Any] = _orvmesh.channel_surface(path)
    content["markers"] = ChannelMarkers(**content["markers"])
    return ChannelSurface(**content)


class ChannelGroup(NamedTuple):
    """One channel group: group number and whether it is a heater, counts of elements, faces (walls) and ends (inlets,
    outlets, hoses, open_edges), whether its surface is closed, wetted area, volume, length and hydraulic diameter in
    model units (0 where unknown)."""
    group: int
    heater: bool
    elements: int
    walls: int
    inlets: int
    outlets: int
    hoses: int
    open_edges: int
    closed: bool
    wetted_area: float
    volume: float
    length: float
    diameter: float


def channel_groups(path: Path) -> List[ChannelGroup]:
    """All channel groups of an OFE file, coolant first, ascending; lengths in model units. Raises Error ("source")."""
    return [ChannelGroup(**group) for group in _orvmesh.channel_groups(path)]


class ChannelNodeMap(NamedTuple):
    """Mold-base nodes of the nodes of the channels' surface; new arrays of shape (n,), node numbers from 1.

    nodes       int32, nodes of the channels' surface, ascending
    points      float32 (n, 3), where they are, model units
    mold_nodes  int32, node of the mold base for each, 0 where none was found
    searched    uint8, 0 for a node that is its own partner
    distances   float64, to the partner in model units, NaN where none was searched or found
    """
    nodes: np.ndarray
    points: np.ndarray
    mold_nodes: np.ndarray
    searched: np.ndarray
    distances: np.ndarray


def map_channel_nodes(path: Path) -> ChannelNodeMap:
    """A mold-base node for every node of the channels' surface, arrays of shape (n,). Raises Error (code "source")."""
    return ChannelNodeMap(**_orvmesh.channel_node_map(path))
