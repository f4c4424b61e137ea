"""ParaView reader for OFE files (.ofe): Tools > Manage Plugins > Load New, this file; then File > Open.

Needs NumPy and what ParaView itself brings. Output is a multi-block data set of three blocks:

    volume    cells with component (1 plastic, 2 mold, 3 channel), material, group, element (number in its component)
    surface   faces with interface (1 part, 2 mold, 3 channel wall, 4 channel end), group, owner, surface (number)
    sensors   points with type, number (in the order of the file, from 1) and carrier (the first id)

Coordinates are in model units. Checksums are verified where the Python module xxhash or the library libxxhash is there;
everything else that could lead outside the file or the mesh is always checked. The format is docs/formats/ofe.md.
"""
import ctypes

import numpy as np

TYPES = {"I": "<i4", "L": "<i8", "F": "<f4", "D": "<f8", "C": "u1"}
HEADER, NODES, SURFACES, SENSORS = 100, 200, 400, 800
COMPONENTS = (310, 320, 330)  # plastic, mold, channel
SCALE_WORD = 29
# By node count: VTK's cell, and which node comes at each of its places (a wedge's triangles turn the other way).
CELLS = {4: (10, (0, 1, 2, 3)), 5: (14, (0, 1, 2, 3, 4)), 6: (13, (0, 2, 1, 3, 5, 4)), 8: (12, tuple(range(8)))}
VTK_TRIANGLE, VTK_QUAD = 5, 9
MOST = 2**31 - 1


class Fault(Exception):
    """What is wrong with a file, one line."""


def require(condition, text):
    if not condition:
        raise Fault(text)


def load_checksum():
    """A function of bytes and seed, or None where there is none to be had."""
    try:
        import xxhash
        return lambda data, seed: xxhash.xxh3_64_intdigest(data, seed)
    except ImportError:
        pass
    try:
        function = ctypes.CDLL("libxxhash.so.0").XXH3_64bits_withSeed
    except (OSError, AttributeError):
        return None
    function.restype, function.argtypes = ctypes.c_uint64, [ctypes.c_void_p, ctypes.c_size_t, ctypes.c_uint64]
    return lambda data, seed: function(data.ctypes.data, data.size, seed)


CHECKSUM = load_checksum()


class BlockFile:
    """The directory of a block file that lies in memory as it is on disk."""

    def __init__(self, path):
        try:
            self.data = np.memmap(path, dtype="u1", mode="r")
        except (OSError, ValueError) as error:
            raise Fault(f"cannot be read: {error}") from error
        data = self.data
        require(data.size >= 64 and data[:8].tobytes() == b"0blocks\n", "is no OFE file")
        self.verify(data[:56], 0, int(data[56:64].view("<u8")[0]), "header")
        version, count = (int(v) for v in data[8:16].view("<u4"))
        size, directory, length, checksum, _ = (int(v) for v in data[16:56].view("<u8"))
        require(version == 1, f"has container version {version} (legal: 1)")
        require(size == data.size and 64 <= directory and directory + length == size and length % 32 == 0,
                f"is cut off or has bytes too many ({data.size}, its header says {size})")
        self.verify(data[directory:], 0, checksum, "directory")
        self.blocks = self.read_directory(data[directory:], count, directory)

    @staticmethod
    def verify(data, seed, expected, what):
        if CHECKSUM is not None:
            require(CHECKSUM(np.ascontiguousarray(data), seed) == expected, f"{what}: the checksum does not match")

    @staticmethod
    def read_directory(data, count, limit):
        blocks, at = {}, 0
        for _ in range(count):
            require(at + 32 <= data.size, "the directory is too short")
            block, _, _ = (int(v) for v in data[at:at + 24].view("<u8"))
            columns = int(data[at + 24:at + 28].view("<u4")[0])
            at += 32
            require(at + 32 * columns <= data.size, "the directory is too short")
            found = []
            for _ in range(columns):
                kind = chr(int(data[at:at + 4].view("<u4")[0]) & 127)
                offset, values, checksum = (int(v) for v in data[at + 8:at + 32].view("<u8"))
                require(kind in TYPES, f"block {block} has a column of unknown type")
                nbytes = values * np.dtype(TYPES[kind]).itemsize
                require(offset % 64 == 0 and 64 <= offset and offset + nbytes <= limit, f"block {block} leaves the file")
                found.append((kind, offset, values, checksum))
                at += 32
            require(block not in blocks, f"block {block} is there twice")
            blocks[block] = found
        return blocks

    def columns(self, block, kinds):
        """The columns of a block as arrays of these types; empty ones of a block without entries."""
        require(block in self.blocks, f"has no block {block}")
        found = self.blocks[block]
        if not found:
            return [np.empty(0, TYPES[kind]) for kind in kinds]
        require("".join(kind for kind, *_ in found) == kinds, f"block {block} has other columns")
        arrays = []
        for index, (kind, offset, values, checksum) in enumerate(found):
            nbytes = values * np.dtype(TYPES[kind]).itemsize
            padded = self.data[offset:offset + -(-nbytes // 64) * 64]
            self.verify(padded, (block * 65536 + index) % 2**64, checksum, f"block {block} column {index}")
            arrays.append(np.asarray(padded[:nbytes]).view(TYPES[kind]))
        return arrays


def table(values, width, what):
    require(values.size % width == 0, f"{what} have an incomplete entry")
    return values.reshape(-1, width)


def check_nodes(nodes, least, count, what):
    require(nodes.size == 0 or (nodes.min() >= least and nodes.max() <= count), f"{what} name nodes that there are not")


def read_elements(file, component, node_count):
    """Pieces (cell type, corners from 0 of shape (n, m), material, group, number) of one component."""
    block = COMPONENTS[component]
    nodes, material, group, _, offsets = file.columns(block, "IIIFL")
    count = material.size
    what = f"elements of block {block}"
    require(group.size == count, f"{what} differ in their columns")
    check_nodes(nodes, 1, node_count, what)
    if count and not offsets.size:
        require(nodes.size % count == 0, f"{what} share no common node count")
        offsets = np.arange(count + 1) * (nodes.size // count)
    require(count == 0 or (offsets.size == count + 1 and offsets[0] == 0 and offsets[-1] == nodes.size
                           and (offsets[1:] >= offsets[:-1]).all()), f"{what} leave their node list")
    sizes = np.diff(offsets)
    require(np.isin(sizes, list(CELLS)).all(), f"{what} have other node counts than 4, 5, 6 and 8")
    for size, (cell, order) in CELLS.items():
        index = np.flatnonzero(sizes == size)
        if index.size:
            corners = nodes[offsets[index][:, None] + np.array(order)] - 1
            yield cell, corners, material[index], group[index], (index + 1).astype(np.int32)


def as_cells(pieces):
    """Cell types, VTK's offsets and connectivity of pieces (cell type, corners, ...)."""
    types = [np.full(len(corners), cell, np.uint8) for cell, corners, *_ in pieces]
    sizes = [np.full(len(corners), corners.shape[1], np.int64) for _, corners, *_ in pieces]
    starts = np.zeros(sum(map(len, sizes)) + 1, np.int64)
    if sizes:
        np.cumsum(np.concatenate(sizes), out=starts[1:])
    flat = [corners.ravel().astype(np.int64) for _, corners, *_ in pieces]
    return join(types, np.uint8), starts, join(flat, np.int64)


def join(arrays, dtype):
    return np.concatenate(arrays) if arrays else np.empty(0, dtype)


def read_volume(file, node_count):
    pieces, component = [], []
    for number in range(3):
        for piece in read_elements(file, number, node_count):
            pieces.append(piece)
            component.append(np.full(len(piece[1]), number + 1, np.uint8))
    arrays = {"component": join(component, np.uint8)}
    for place, name in enumerate(("material", "group", "element"), 2):
        arrays[name] = join([piece[place] for piece in pieces], np.int32)
    return (*as_cells(pieces), arrays)


def read_surfaces(file, node_count):
    nodes, interface, _, _, _, owner, tag = file.columns(SURFACES, "IIIIIII")
    nodes = table(nodes, 4, "surfaces")
    require(len(nodes) == interface.size == owner.size == tag.size, "surfaces differ in their columns")
    check_nodes(nodes[:, :3], 1, node_count, "surfaces")
    check_nodes(nodes[:, 3], 0, node_count, "surfaces")
    triangle = (nodes[:, 3] == 0) | (nodes[:, 3] == nodes[:, 2])
    pieces, order = [], []
    for cell, corners, chosen in ((VTK_TRIANGLE, 3, triangle), (VTK_QUAD, 4, ~triangle)):
        index = np.flatnonzero(chosen)
        if index.size:
            pieces.append((cell, nodes[index, :corners] - 1))
            order.append(index)
    index = join(order, np.int64)
    arrays = {"interface": interface[index], "group": (tag[index] >> 8) & 0xFFFFF, "owner": owner[index],
              "surface": (index + 1).astype(np.int32)}
    return (*as_cells(pieces), arrays)


def read_sensors(file):
    ids, kinds, positions = file.columns(SENSORS, "IIF")
    ids, positions = table(ids, 4, "sensors"), table(positions, 3, "sensors")
    require(len(ids) == len(positions) == kinds.size, "sensors differ in their columns")
    return positions, {"type": kinds, "number": np.arange(1, kinds.size + 1, dtype=np.int32), "carrier": ids[:, 0].copy()}


def read_mesh(path):
    """All that is shown of a file, in model units: a dict of points (N, 3), volume and surface (cell types, offsets,
    connectivity, cell arrays) and sensors (points, point arrays). Raises Fault."""
    file = BlockFile(path)
    words = file.columns(HEADER, "IICCCC")[0]
    require(words.size == 160, "has a header of another size")
    scale = words.view("<f4")[SCALE_WORD]
    require(np.isfinite(scale), "its scale factor is not finite")
    scale = scale if scale != 0 else np.float32(1)
    points = table(file.columns(NODES, "F")[0], 3, "nodes")
    require(len(points) <= MOST, "has too many nodes")
    sensors, sensor_arrays = read_sensors(file)
    return {"points": points * scale, "volume": read_volume(file, len(points)),
            "surface": read_surfaces(file, len(points)), "sensors": (sensors * scale, sensor_arrays)}


# What follows turns arrays into VTK's objects; these keep the arrays alive.

def vtk_array(values, name=None):
    from vtkmodules.util.numpy_support import numpy_to_vtk
    array = numpy_to_vtk(np.ascontiguousarray(values), deep=0)
    if name is not None:
        array.SetName(name)
    return array


def cell_array(offsets, connectivity):
    """VTK's cells take the values over without the objects that hold them: they get a copy of their own."""
    from vtkmodules.util.numpy_support import numpy_to_vtkIdTypeArray
    from vtkmodules.vtkCommonDataModel import vtkCellArray
    cells = vtkCellArray()
    cells.SetData(numpy_to_vtkIdTypeArray(offsets, deep=1), numpy_to_vtkIdTypeArray(connectivity, deep=1))
    return cells


def add_arrays(attributes, arrays):
    for name, values in arrays.items():
        attributes.AddArray(vtk_array(values, name))


def vtk_points(values):
    from vtkmodules.vtkCommonCore import vtkPoints
    points = vtkPoints()
    points.SetData(vtk_array(values))
    return points


def fill_grid(grid, points, types, offsets, connectivity, arrays):
    grid.SetPoints(points)
    grid.SetCells(vtk_array(types), cell_array(offsets, connectivity))
    add_arrays(grid.GetCellData(), arrays)


def fill_sensors(cloud, positions, arrays):
    cloud.SetPoints(vtk_points(positions))
    count = len(positions)
    cloud.SetVerts(cell_array(np.arange(count + 1), np.arange(count)))
    add_arrays(cloud.GetPointData(), arrays)


def fill_blocks(blocks, mesh):
    """Sets the three blocks of a vtkMultiBlockDataSet from what read_mesh() gave."""
    from vtkmodules.vtkCommonDataModel import vtkCompositeDataSet, vtkPolyData, vtkUnstructuredGrid
    points = vtk_points(mesh["points"])
    volume, surface, sensors = vtkUnstructuredGrid(), vtkUnstructuredGrid(), vtkPolyData()
    fill_grid(volume, points, *mesh["volume"])
    fill_grid(surface, points, *mesh["surface"])
    fill_sensors(sensors, *mesh["sensors"])
    for index, (name, block) in enumerate((("volume", volume), ("surface", surface), ("sensors", sensors))):
        blocks.SetBlock(index, block)
        blocks.GetMetaData(index).Set(vtkCompositeDataSet.NAME(), name)


try:
    from paraview.util.vtkAlgorithm import VTKPythonAlgorithmBase, smdomain, smhint, smproperty, smproxy
except ImportError:
    smproxy = None  # outside ParaView the functions above are what there is

if smproxy is not None:
    @smproxy.reader(name="OrvmeshReader", label="orvmesh OFE", extensions="ofe", file_description="OFE mesh")
    class OrvmeshReader(VTKPythonAlgorithmBase):
        """Reads an OFE file into blocks volume, surface and sensors."""

        def __init__(self):
            super().__init__(nInputPorts=0, nOutputPorts=1, outputType="vtkMultiBlockDataSet")
            self._path = None

        @smproperty.stringvector(name="FileName")
        @smdomain.filelist()
        @smhint.filechooser(extensions="ofe", file_description="OFE mesh")
        def SetFileName(self, path):
            """Names the file."""
            if path != self._path:
                self._path = path
                self.Modified()

        def RequestData(self, request, inputs, outputs):
            """Reads the file; a fault of it is shown in ParaView's message window."""
            from vtkmodules.vtkCommonDataModel import vtkMultiBlockDataSet
            try:
                mesh = read_mesh(self._path)
            except Fault as fault:
                raise RuntimeError(f"{self._path}: {fault}") from None
            fill_blocks(vtkMultiBlockDataSet.GetData(outputs, 0), mesh)
            return 1
