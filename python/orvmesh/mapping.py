"""Nearest points, and values carried across by them."""
from __future__ import annotations

from os import PathLike
from typing import Any, NamedTuple, Union

import numpy as np

from . import _orvmesh, columns
from .mesh import Mesh

Path = Union[str, "PathLike[str]"]


class Nearest(NamedTuple):
    """Nearest points of M places; new arrays of shape (M,): indices int64 (row of the points, from 0; -1 for none) and
    distances float64 (in the points' unit; NaN for none)."""
    indices: np.ndarray
    distances: np.ndarray


def nearest(points: Any, places: Any) -> Nearest:
    """For each of the places, (M, 3), the nearest of the points, (N, 3); of equally near ones the first.

    Any numbers in one common unit, converted to float64; points that are not finite are never found. The result has
    shape (M,), indices from 0. Raises Error (code "argument") for other shapes.
    """
    return Nearest(*_orvmesh.nearest(columns.points(points, "points"), columns.points(places, "places")))


def map_values(points: Any, values: Any, onto: Union[Mesh, Path, Any]) -> np.ndarray:
    """Carries values at points, (N,) and (N, 3), to places by the nearest point; float64 (M,), a new array.

    onto: the path of an OFE file, whose node n is at n - 1 of the result and only nodes that elements use get a value; a
    Mesh, all of whose nodes do; or an array of places, (M, 3). Points are in model units. NaN where no point was found.
    Raises Error.
    """
    at = columns.points(points, "points")
    given = np.asarray(values, np.float64)
    if given.shape != (len(at),):
        raise columns.fail(f"values: its shape is {given.shape} (legal: ({len(at)},), one for each point)")
    if isinstance(onto, Mesh):
        found = Nearest(*_orvmesh.nearest(at, onto.points()))
    elif isinstance(onto, (str, PathLike)):
        found = Nearest(*_orvmesh.nearest_to_nodes(onto, at))
    else:
        found = nearest(at, onto)
    result = np.full(len(found.indices), np.nan)
    hit = found.indices >= 0
    result[hit] = given[found.indices[hit]]
    return result
