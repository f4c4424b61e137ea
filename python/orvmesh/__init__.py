"""Meshes for mold-cooling analysis as NumPy arrays.

    import orvmesh
    mesh = orvmesh.read("mold.ofe")
    mesh.nodes, mesh.mold.connectivity        # views of the file, nothing is copied
    orvmesh.transfer("moldbase", "mold.ofe", "solver.ofe")

Numbers that a file holds (of nodes, elements, surfaces, sensors) count from 1, indices into arrays from 0: node n is
row n - 1 of ``mesh.nodes``. Lengths of a file times ``mesh.scale`` are lengths in model units. Every failure is an
``orvmesh.Error``; no target file is ever left half written. Long calls let other threads run.
"""
from ._orvmesh import Error, version as __version__
from .analysis import (
    VARIANTS, CheckReport, Entity, Finding, HeatSource, Transfer, check, export_ctg, heat_source, node_types, transfer)
from .channels import (
    ChannelGroup, ChannelMarkers, ChannelNodeMap, ChannelSurface, channel_groups, channel_surface, map_channel_nodes)
from .dumps import Dump, convert_dmp, read_dmp, write_dmp
from .files import dump, export_vtu, import_msh, load, read, write
from .mapping import Nearest, map_values, nearest
from .mesh import (
    BadElements, Conditions, Diameters, Elements, Geometry, Header, Layers, Layout, Lines, Mesh, Sensors, Surfaces,
    SurfaceLists, SurfaceName)
from .meshio_bridge import from_meshio, to_meshio
from .sensors import Sensor, SensorMaps, rewrite_snc, sensor_maps, sensors

__all__ = [
    "BadElements", "ChannelGroup", "ChannelMarkers", "ChannelNodeMap", "ChannelSurface", "CheckReport", "Conditions",
    "Diameters", "Dump", "Elements", "Entity", "Error", "Finding", "Geometry", "Header", "HeatSource", "Layers", "Layout",
    "Lines", "Mesh", "Nearest", "Sensor", "SensorMaps", "Sensors", "SurfaceLists", "SurfaceName", "Surfaces", "Transfer",
    "VARIANTS", "channel_groups", "channel_surface", "check", "convert_dmp", "dump", "export_ctg", "export_vtu",
    "from_meshio", "heat_source", "import_msh", "load", "map_channel_nodes", "map_values", "nearest", "node_types", "read",
    "read_dmp", "rewrite_snc", "sensor_maps", "sensors", "to_meshio", "transfer", "write", "write_dmp"]
