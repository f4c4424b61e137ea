#include <pybind11/stl.h>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "channel/channel_groups.h"
#include "channel/surface_node_map.h"
#include "platform/cofedata.h"

namespace orvmesh::python {
namespace {

using channel::ChannelSurface;

ChannelSurface readSurface(const std::string& path) {
  ChannelSurface surface;
  std::string error;
  if (channel::readChannelSurface(path.c_str(), {}, surface, error) <= 0) throw faultOf(error, {path, ""});
  return surface;
}

std::vector<double> withoutEntryZero(const std::vector<double>& values) {
  return values.empty() ? values : std::vector<double>(values.begin() + 1, values.end());
}

py::dict markersOf(const channel::Markers& markers) {
  py::dict result;
  std::vector<double> positions;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(markers.count()); ++i)
    positions.insert(positions.end(), {markers.x[i], markers.y[i], markers.z[i]});
  result["kinds"] =
      adopt(std::vector<int>(markers.kind.begin() + (markers.kind.empty() ? 0 : 1), markers.kind.end()));
  result["positions"] = adopt(std::move(positions), 3);
  result["diameters"] = adopt(withoutEntryZero(markers.diameter));
  return result;
}

py::dict channelSurface(const Path& path) {
  const std::string name = path.string();
  ChannelSurface surface = unlocked({name, ""}, [&] { return readSurface(name); });
  py::dict result;
  result["group_count"] = surface.groups;
  result["points"] = adopt(std::move(surface.xyz), 3);
  result["node_numbers"] = adopt(std::move(surface.fileNumbers));
  result["faces"] = adopt(std::move(surface.nodes), 4);
  result["groups"] = adopt(std::move(surface.group));
  result["corners"] = adopt(std::move(surface.vertexCount));
  result["interfaces"] = adopt(std::move(surface.interfaceId));
  result["kinds"] = adopt(std::move(surface.kind));
  result["end_codes"] = adopt(std::move(surface.endCode));
  result["markers"] = markersOf(surface.markers);
  return result;
}

py::dict groupOf(const channel::ChannelGroup& group) {
  py::dict result;
  result["group"] = group.group;
  result["heater"] = group.isHeater;
  result["elements"] = group.elements;
  result["walls"] = group.walls;
  result["inlets"] = group.pieces.inlets;
  result["outlets"] = group.pieces.outlets;
  result["hoses"] = group.pieces.hoses;
  result["open_edges"] = group.pieces.openEdges;
  result["closed"] = group.pieces.isClosed;
  result["wetted_area"] = group.wettedArea;
  result["volume"] = group.volume;
  result["length"] = group.length;
  result["diameter"] = group.diameter;
  return result;
}

py::list channelGroups(const Path& path) {
  const std::string name = path.string();
  const auto groups = unlocked({name, ""}, [&] {
    COFEData data;
    if (data.ReadDataBin(name.c_str(), nullptr, 0, false) != 1) throw Fault(kSource, name, data.errorText());
    return channel::listGroups(readSurface(name), data.model());
  });
  py::list result;
  for (const auto& group : groups) result.append(groupOf(group));
  return result;
}

py::dict channelNodeMap(const Path& path) {
  const std::string name = path.string();
  channel::SurfaceNodeMap map;
  unlocked({name, ""}, [&] {
    std::string error;
    if (channel::mapSurfaceNodes(name.c_str(), {}, map, error) <= 0) throw faultOf(error, {name, ""});
  });
  py::dict result;
  result["nodes"] = adopt(std::move(map.nodes));
  result["points"] = adopt(std::move(map.xyz), 3);
  result["mold_nodes"] = adopt(std::move(map.toMold));
  result["searched"] = adopt(std::move(map.searched));
  result["distances"] = adopt(std::move(map.distance));
  return result;
}

}  // namespace

void addChannels(py::module_& module) {
  module.def("channel_surface", &channelSurface, py::arg("path"),
             "The surface of the channels: points (N, 3), faces (F, 4) and arrays of shape (N,) and (F,). "
             "Raises Error.");
  module.def("channel_groups", &channelGroups, py::arg("path"),
             "The channel groups, a list of dicts. Raises Error.");
  module.def("channel_node_map", &channelNodeMap, py::arg("path"),
             "Mold-base nodes of the channels' nodes, a dict of arrays of shape (n,) and points (n, 3). "
             "Raises Error.");
}

}  // namespace orvmesh::python
