"""Arrays of the exact types that the compiled half takes."""
from __future__ import annotations

from typing import Any, Dict, Tuple

import numpy as np

from . import _orvmesh

TYPES: Dict[str, Any] = {"I": np.dtype("int32"), "L": np.dtype("int64"), "F": np.dtype("float32"), "C": np.dtype("uint8")}
LAYOUT: Dict[str, Dict[str, Tuple[str, int]]] = _orvmesh.block_columns()


def fail(text: str) -> _orvmesh.Error:
    """An Error about an argument."""
    error = _orvmesh.Error(text)
    error.code, error.entity = "argument", text.partition(": ")[0]
    return error


def exact(values: Any, dtype: Any, width: int, name: str) -> np.ndarray:
    """values as a C-contiguous array of the type, shape (n,) or (n, width); the array itself where it is one."""
    array, dtype = np.asarray(values), np.dtype(dtype)
    if array.size == 0 and array.dtype != dtype:
        array = np.empty(array.shape, dtype)
    if array.dtype != dtype:
        if not np.can_cast(array.dtype, dtype, "same_kind") and array.dtype.kind != "u":
            raise fail(f"{name}: an array of {array.dtype} does not become {dtype}")
        if dtype.kind in "iu" and array.size and (array.min() < np.iinfo(dtype).min or array.max() > np.iinfo(dtype).max):
            raise fail(f"{name}: a value does not fit into {dtype}")
        array = array.astype(dtype)
    if width > 1 and array.size == 0:
        array = array.reshape(0, width)
    if array.shape[1:] != ((width,) if width > 1 else ()) or array.ndim == 0:
        raise fail(f"{name}: its shape is {array.shape} (legal: {f'(n, {width})' if width > 1 else '(n,)'})")
    return np.ascontiguousarray(array)


def points(values: Any, name: str) -> np.ndarray:
    """values as a float64 array of shape (n, 3)."""
    array = np.asarray(values)
    if array.dtype.kind not in "iuf":
        raise fail(f"{name}: an array of {array.dtype} holds no coordinates")
    return exact(array.astype(np.float64), np.float64, 3, name)


def block(name: str, given: Dict[str, Any]) -> Dict[str, np.ndarray]:
    """All columns of a block: those given, the others zero (offsets: none)."""
    layout = LAYOUT[name]
    unknown = sorted(set(given) - set(layout))
    if unknown:
        raise fail(f"{name}: unknown column {unknown[0]} (legal: {', '.join(layout)})")
    columns = {
        column: exact(given[column], TYPES[kind], width or 1, f"{name}.{column}")
        for column, (kind, width) in layout.items() if given.get(column) is not None}
    lengths = [len(columns[c]) for c, (_, width) in layout.items() if width and c in columns]
    entries = lengths[0] if lengths else 0
    result = {}
    for column, (kind, width) in layout.items():
        shape: Tuple[int, ...] = ((entries, width) if width > 1 else (entries,)) if width else (0,)
        result[column] = columns[column] if column in columns else np.zeros(shape, TYPES[kind])
    return result
