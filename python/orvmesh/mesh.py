"""The mesh of an OFE file: named tables over its columns."""
from __future__ import annotations

from typing import Any, Dict, List, Mapping, NamedTuple, Optional, Tuple

import numpy as np

from . import columns


class Header:
    """Header of a file: words, an int32 array of shape (160,), and four texts.

    words       int32 (160,); words 29 to 33 and 36 to 47 hold the bits of floats. A copy, may be changed.
    version     the version the file is written as: 2002, 2008 to 2012, 13001, 14001 to 14003
    source, date_time, unit, remark     texts; bytes that are no UTF-8 come as surrogate escapes
    """

    def __init__(self, words: Optional[Any] = None, version: int = 14003, source: str = "", date_time: str = "",
                 unit: str = "", remark: str = "") -> None:
        """A header; without words (int32, shape (160,)) one of that version with scale 1. Raises Error."""
        if words is None:
            words = np.zeros(160, np.int32)
            words[0], words[29] = version, np.float32(1).view(np.int32)
        self.words = columns.exact(words, np.int32, 1, "header.words")
        self.version, self.source, self.date_time, self.unit, self.remark = version, source, date_time, unit, remark

    @property
    def floats(self) -> np.ndarray:
        """The words as float32, shape (160,), a view; meaningful where a word holds a float."""
        return self.words.view(np.float32)

    def strings(self) -> Tuple[bytes, ...]:
        """The four texts as UTF-8 bytes: source, date and time, unit, remark."""
        return tuple(text.encode("utf-8", "surrogateescape")
                     for text in (self.source, self.date_time, self.unit, self.remark))


class Elements(NamedTuple):
    """One list of volume elements; element e is entry e - 1. Arrays are views of the file, read-only.

    connectivity  int32 (sum of node counts,), node numbers from 1, element after element; 4 nodes are a tetrahedron,
                  5 a pyramid, 6 a wedge, 8 a hexahedron
    materials     int32 (n,); of channel elements the kind, 1 coolant, 2 heater
    groups        int32 (n,), group or secondary material
    values        float32 (n,)
    offsets       int64 (n + 1,) into connectivity, or (0,) when all elements have as many nodes
    """
    connectivity: np.ndarray
    materials: np.ndarray
    groups: np.ndarray
    values: np.ndarray
    offsets: np.ndarray

    @property
    def size(self) -> int:
        """Number n of elements."""
        return len(self.materials)

    @property
    def nodes_per_element(self) -> int:
        """Number of nodes that every element has; 0 when they differ or there are none."""
        return len(self.connectivity) // self.size if self.size and not len(self.offsets) else 0

    def starts(self) -> np.ndarray:
        """int64 (n + 1,): where each element begins in connectivity, and the end; offsets itself where there are any."""
        return self.offsets if len(self.offsets) else np.arange(self.size + 1, dtype=np.int64) * self.nodes_per_element

    def of_size(self, node_count: int) -> Tuple[np.ndarray, np.ndarray]:
        """Elements of that many nodes: their indices from 0, int64 (m,), and node numbers from 1, int32 (m, node_count).

        The numbers are a view of the file when all elements have as many nodes, else a copy.
        """
        if not len(self.offsets):
            if node_count != self.nodes_per_element:
                return np.empty(0, np.int64), np.empty((0, node_count), np.int32)
            return np.arange(self.size), self.connectivity.reshape(-1, node_count)
        index = np.flatnonzero(np.diff(self.offsets) == node_count)
        return index, self.connectivity[self.offsets[index][:, None] + np.arange(node_count)]


class Surfaces(NamedTuple):
    """Surface elements, a table of columns; surface s is entry s - 1. Views of the file, read-only.

    nodes           int32 (n, 4), node numbers from 1; a triangle's fourth is its third or 0
    interfaces      int32 (n,): 1 part, 2 mold off the channels, 3 mold against channel, 4 channel ends and hoses
    owner_codes, contact_codes, boundary_types      int32 (n,)
    element_numbers int32 (n,), the element behind it, from 1 in the list of its component; 0 for none
    tags            int32 (n,), flags in bits 0 to 7, a group in bits 8 to 27
    """
    nodes: np.ndarray
    interfaces: np.ndarray
    owner_codes: np.ndarray
    contact_codes: np.ndarray
    boundary_types: np.ndarray
    element_numbers: np.ndarray
    tags: np.ndarray

    @property
    def size(self) -> int:
        """Number n of surface elements."""
        return len(self.interfaces)

    @property
    def groups(self) -> np.ndarray:
        """Group numbers out of the tags, int32 (n,), a new array."""
        return (self.tags >> 8) & 0xFFFFF

    @property
    def triangles(self) -> np.ndarray:
        """True for triangles, bool (n,), a new array; the others are quadrangles."""
        return (self.nodes[:, 3] == 0) | (self.nodes[:, 3] == self.nodes[:, 2])

    def records(self) -> np.ndarray:
        """The table as one structured array, shape (n,), with the fields above; numbers from 1. A new array, the caller's:
        a file holds column after column."""
        table = np.empty(self.size, [(name, np.int32, column.shape[1:]) for name, column in zip(self._fields, self)])
        for name, column in zip(self._fields, self):
            table[name] = column
        return table


class Conditions(NamedTuple):
    """Conditions at nodes, arrays of shape (n,), views of the file: entity_numbers int32 (nodes from 1), types int32
    (1 EM, 2 EC, 3 OM, 4 PR, 5 MW, 6 SM), values float32."""
    entity_numbers: np.ndarray
    types: np.ndarray
    values: np.ndarray


class BadElements(NamedTuple):
    """Elements marked as bad, int32 arrays of shape (n,), views of the file: element_numbers (from 1) and codes."""
    element_numbers: np.ndarray
    codes: np.ndarray


class Diameters(NamedTuple):
    """Channel diameters, views of the file: nodes int32 (n, 8), numbers from 1 with zeros at the end, and diameters
    float32 (n,) in the file's lengths."""
    nodes: np.ndarray
    diameters: np.ndarray


class Lines(NamedTuple):
    """Channel lines, two entries each, views of the file: values float32 (n, 4), x, y, z and diameter of an end in the
    file's lengths, and codes int32 (n, 4)."""
    values: np.ndarray
    codes: np.ndarray


class Layout(NamedTuple):
    """Points and beams of the channel layout, views of the file.

    values  float32 (n, 13): x, y, z, diameters at both ends (the file's lengths), eight further values
    codes   int32 (n, 7): is-point, point type (1 inlet, 2 outlet), end points A and B (from 1 among the points), code,
            beam code (6 and 60000 are heaters), a further integer
    """
    values: np.ndarray
    codes: np.ndarray


class Sensors(NamedTuple):
    """Sensors in the order of the file, views of it: ids int32 (n, 4), the first the element, node or surface (from 1)
    that carries it; types int32 (n,): 1 part element, 2 part node, 3 surface, 4 mold element, 5 mold node, 6 the sixth
    kind; positions float32 (n, 3) in the file's lengths."""
    ids: np.ndarray
    types: np.ndarray
    positions: np.ndarray


class Geometry(NamedTuple):
    """Points and faces beside the mesh, views of the file: nodes int32 (n, 4), is_point int32 (n,), positions float32
    (n, 3) in the file's lengths, codes int32 (n, 2)."""
    nodes: np.ndarray
    is_point: np.ndarray
    positions: np.ndarray
    codes: np.ndarray


class SurfaceLists(NamedTuple):
    """Lists of integers that surfaces carry, views of the file: values int32 (sum of lengths,), surface_numbers int32
    (n,) from 1, offsets int64 (n + 1,) into values, (0,) when there are none."""
    values: np.ndarray
    surface_numbers: np.ndarray
    offsets: np.ndarray


class SurfaceName(NamedTuple):
    """A name for conditions on surfaces: its type and its dictionary, None when it has none."""
    name: str
    type: int
    dictionary: Optional[Dict[str, str]]


class Layers(NamedTuple):
    """Names of layers, a list of n texts, and their values, int32 (n, 6): material, layer, three integers, a flag; of
    channel layers (n, 2). values is a view of the file."""
    names: List[str]
    values: np.ndarray


# Public table: block of the file, its columns in the order of the table's fields.
ELEMENT_COLUMNS = ("connectivity", "fieldA", "fieldB", "value", "offsets")


def _texts(block: Mapping[str, np.ndarray], pool: str) -> List[str]:
    data, offsets = block[pool].tobytes(), block["offsets"].tolist()
    return [data[a:b].decode("utf-8", "surrogateescape") for a, b in zip(offsets, offsets[1:])]


class Mesh:
    """Everything that an OFE file holds.

    Tables are views of the mapped file: nothing is copied, arrays are read-only, and each keeps the mapping alive by
    itself, so that they outlive the mesh; a file that is replaced or removed stays readable here. A file that is cut
    short in place by another program takes the process down (SIGBUS), as with every mapped file.
    """

    def __init__(self, blocks: Mapping[str, Mapping[str, Any]], header: Optional[Header] = None) -> None:
        """A mesh of arrays: for each block of docs/formats/ofe.md its columns ("nodes": {"xyz": (N, 3)}, ...).

        Blocks that are left out are empty, columns that are left out 0; shapes are those of the tables below, node
        numbers from 1. Arrays of the right type are kept, not copied. Raises Error (code "argument").
        """
        unknown = sorted(set(blocks) - set(columns.LAYOUT))
        if unknown:
            raise columns.fail(f"{unknown[0]}: no block of an OFE file (legal: {', '.join(columns.LAYOUT)})")
        self.header = header if header is not None else Header()
        self.warnings: List[str] = []
        self._blocks = {name: columns.block(name, dict(blocks.get(name, {}))) for name in columns.LAYOUT}
        self._before: Optional[Dict[str, Dict[str, np.ndarray]]] = None  # the blocks that the header counts

    @classmethod
    def _of_file(cls, content: Dict[str, Any]) -> Mesh:
        mesh = cls.__new__(cls)
        header = content["header"]
        texts = [text.decode("utf-8", "surrogateescape") for text in header["strings"]]
        mesh.header = Header(header["words"], header["version"], *texts)
        mesh.warnings = content["warnings"]
        mesh._blocks = content["blocks"]
        mesh._before = mesh._blocks
        return mesh

    def replace(self, blocks: Mapping[str, Mapping[str, Any]]) -> Mesh:
        """A mesh with these columns in place of its own (shapes as the constructor has them); the rest is shared.

        write() then brings the counts in the header up to date. The header is shared. Raises Error (code "argument").
        """
        changed: Dict[str, Mapping[str, Any]] = dict(self._blocks)
        for name, given in blocks.items():
            changed[name] = {**changed.get(name, {}), **given}
        mesh = Mesh(changed, self.header)
        mesh._before = self._before
        return mesh

    @property
    def blocks(self) -> Dict[str, Dict[str, np.ndarray]]:
        """The columns themselves by block and name, as docs/formats/ofe.md has them; shapes (n,) or (n, width)."""
        return self._blocks

    @property
    def scale(self) -> float:
        """Model units per length of the file: header word 29, where 0 counts as 1."""
        return float(self.header.floats[29]) or 1.0

    @property
    def nodes(self) -> np.ndarray:
        """Node coordinates, float32 (N, 3), in the file's lengths; node n is row n - 1. A read-only view."""
        return self._blocks["nodes"]["xyz"]

    def points(self) -> np.ndarray:
        """Node coordinates in model units, float64 (N, 3), a new array."""
        return self.nodes.astype(np.float64) * self.scale

    def _table(self, kind: Any, block: str, names: Tuple[str, ...]) -> Any:
        return kind(*(self._blocks[block][name] for name in names))

    @property
    def plastic(self) -> Elements:
        """Plastic elements: part (groups below 201) and hot runner (groups 201 to 300)."""
        return self._table(Elements, "elementsPlastic", ELEMENT_COLUMNS)

    @property
    def mold(self) -> Elements:
        """Mold elements: mold base, and inserts (materials from 5001 on)."""
        return self._table(Elements, "elementsMoldBase", ELEMENT_COLUMNS)

    @property
    def channel(self) -> Elements:
        """Channel elements: coolant (kind 1 in materials) and heaters (kind 2)."""
        return self._table(Elements, "elementsCoolChannel", ELEMENT_COLUMNS)

    @property
    def surfaces(self) -> Surfaces:
        """Surface elements as a table of columns."""
        return self._table(Surfaces, "elementSurfaces", ("nodes", "interfaceId", "ownerCode", "contactCode",
                                                         "boundaryType", "elementNo", "tag"))

    @property
    def conditions(self) -> Conditions:
        """Conditions at nodes."""
        return self._table(Conditions, "boundaryConditions", ("entityNo", "type", "value"))

    def bad(self, component: str) -> BadElements:
        """Elements of a component ("plastic", "mold" or "channel") that are marked as bad, arrays of shape (n,)."""
        names = {"plastic": "Plastic", "mold": "MoldBase", "channel": "CoolChannel"}
        if component not in names:
            raise columns.fail(f"component: {component!r} (legal: {', '.join(names)})")
        return self._table(BadElements, f"badElements{names[component]}", ("elementNo", "code"))

    @property
    def diameters(self) -> Diameters:
        """Diameters of channels at nodes."""
        return self._table(Diameters, "coolantChannelDiameters", ("nodes", "diameter"))

    @property
    def lines(self) -> Lines:
        """Lines of channels."""
        return self._table(Lines, "coolantChannelLines", ("values", "codes"))

    @property
    def layout(self) -> Layout:
        """Layout of channels: points and beams."""
        return self._table(Layout, "coolantChannelLayout", ("values", "codes"))

    @property
    def sensors(self) -> Sensors:
        """Sensors as the file has them; orvmesh.sensors() tells what they sit on and how they are numbered."""
        return self._table(Sensors, "sensors", ("ids", "type", "position"))

    @property
    def mold_inserts(self) -> Geometry:
        """Points and faces of mold inserts."""
        return self._table(Geometry, "moldMetal", ("nodes", "isPoint", "position", "codes"))

    @property
    def channel_geometry(self) -> Geometry:
        """Points and faces of channel surfaces given beside the mesh."""
        return self._table(Geometry, "coolingChannelSurface", ("nodes", "isPoint", "position", "codes"))

    @property
    def surface_lists(self) -> SurfaceLists:
        """Which conditions surfaces carry, as lists of integers."""
        return self._table(SurfaceLists, "surfaceBoundaryConditions", ("list", "surfaceNo", "offsets"))

    @property
    def surface_names(self) -> List[SurfaceName]:
        """Names of conditions on surfaces with their dictionaries, decoded anew at each call."""
        block = self._blocks["surfaceBoundaryConditionNames"]
        texts = iter(_texts(block, "texts"))
        names = []
        for kind, size in block["typeAndDictionarySize"].tolist():
            name = next(texts)
            names.append(SurfaceName(name, kind, {next(texts): next(texts) for _ in range(size)} if size >= 0 else None))
        return names

    def layers(self, of: str) -> Layers:
        """Layers of "mold", "part-inserts" or "channels": n names and values of shape (n, 6), for channels (n, 2)."""
        blocks = {"mold": "moldMetalLayers", "part-inserts": "partInsertLayers", "channels": "coolantChannelLayers"}
        if of not in blocks:
            raise columns.fail(f"of: {of!r} (legal: {', '.join(blocks)})")
        block = self._blocks[blocks[of]]
        return Layers(_texts(block, "names"), block["values"])

    @property
    def parting_direction(self) -> Optional[np.ndarray]:
        """Direction in which the mold opens, float32 (3,), a view; None when the file has none."""
        direction = self._blocks["partingDirection"]["direction"]
        return direction[0] if len(direction) else None

    def __repr__(self) -> str:
        return (f"<orvmesh.Mesh: {len(self.nodes)} nodes, {self.plastic.size} plastic, {self.mold.size} mold and "
                f"{self.channel.size} channel elements, {self.surfaces.size} surfaces, unit {self.header.unit!r}>")
