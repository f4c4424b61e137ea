"""Sensors and their numbers."""
from __future__ import annotations

from os import PathLike
from typing import Dict, List, NamedTuple, Tuple, Union

import numpy as np

from . import _orvmesh

Path = Union[str, "PathLike[str]"]


class Sensor(NamedTuple):
    """A sensor: display number, number (from 1 by type, 0 for surface sensors), type 1 to 6, its seat (what it sits on)
    and seat_number, its position (x, y, z) in model units, the component it lies in ("" for none), and new_number and
    new_type in the mesh joined with its part inserts."""
    display: int
    number: int
    type: int
    seat: str
    seat_number: int
    position: Tuple[float, float, float]
    component: str
    new_number: int
    new_type: int


def sensors(path: Path) -> List[Sensor]:
    """All sensors of an OFE file by type, with what they sit on and their numbers. Raises Error (code "source")."""
    return [Sensor(**row) for row in _orvmesh.list_sensors(path)]


class SensorMaps(NamedTuple):
    """Number maps between a mesh and the mesh joined with its part inserts; new arrays old_to_new and new_to_old,
    int32 (n, 3): type, local and global number; row i - 1 belongs to global number i. counts: sensors of each type 1, 2, 4, 5, 6."""
    counts: Dict[int, int]
    old_to_new: np.ndarray
    new_to_old: np.ndarray


def sensor_maps(path: Path, fast: bool = False) -> SensorMaps:
    """Both number maps of an OFE file, int32 (n, 3); fast: from the header's counts alone, every mold sensor counts as
    one in an insert. Raises Error (code "source")."""
    return SensorMaps(**_orvmesh.sensor_maps(path, fast))


def rewrite_snc(history: Path, mesh: Path) -> None:
    """Rewrites an SNC history in place, from the numbers of the joined mesh to those of the mesh itself.

    A copy history + ".tmc" stands beside it meanwhile, and stays where the file cannot be written again. Raises Error.
    """
    _orvmesh.rewrite_snc(history, mesh)
