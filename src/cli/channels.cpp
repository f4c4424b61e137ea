#include <algorithm>
#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/other_file.h"
#include "base/text_number.h"
#include "channel/channel_groups.h"
#include "channel/channel_stl.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "platform/cofedata.h"
#include "view/channel_vtu.h"
#include "view/text_io.h"
#include "view/text_table.h"

namespace orvmesh::cli {
namespace {

using channel::ChannelGroup;
using channel::ChannelSurface;
using channel::Markers;
using Json = nlohmann::ordered_json;

struct Options {
  std::string file, target;
  bool json = false;
};

// What is told of a file.
struct Channels {
  ChannelSurface surface;
  std::vector<ChannelGroup> groups;
  double lengthFactor = 1;
  std::string unit;
};

Channels read(const std::string& file) {
  const ProgressLine progress("reading " + file);
  COFEData data;
  if (data.ReadDataBin(file.c_str(), nullptr, 0, false) != 1) throw Failure(file, data.errorText());
  Channels channels;
  std::string error;
  if (channel::readChannelSurface(file.c_str(), {}, channels.surface, error) <= 0)
    throw Failure(file, error.substr(std::min(error.size(), file.size() + 2)));
  channels.groups = channel::listGroups(channels.surface, data.model());
  channels.lengthFactor = data.model().lengthFactor;
  channels.unit = data.model().header.unit;
  return channels;
}

void draw(const ChannelSurface& surface, const std::string& path) {
  if (path.ends_with(".stl")) {
    if (surface.faceCount() == 0) throw Failure(path, "the mesh has no channel faces to draw");
    if (!channel::drawSurface(surface, path)) throw Failure(path, "cannot be written");
    return;
  }
  view::writeChannelVtu({surface.xyz, surface.fileNumbers, surface.nodes, surface.group, surface.vertexCount,
                         surface.interfaceId, surface.kind, surface.endCode},
                        path);
}

// Names of the kinds 0, 1, 2, 3 of faces, of 2, 3, 4 of markers, and of what figures come from.
constexpr const char* kFaceKinds[] = {"other", "coolant", "heater", "hose"};
constexpr const char* kMarkerKinds[] = {"", "", "coolant inlet", "coolant outlet", "heater inlet"};
constexpr const char* kLengthSources[] = {"-", "layout", "lines", "surface"};
constexpr const char* kVolumeSources[] = {"-", "elements", "surface"};

const char* nameOf(channel::LengthFrom source) { return kLengthSources[static_cast<std::size_t>(source)]; }
const char* nameOf(channel::VolumeFrom source) { return kVolumeSources[static_cast<std::size_t>(source)]; }
std::string groupName(const ChannelGroup& group) {
  return (group.isHeater ? "heater " : "coolant ") + std::to_string(group.group);
}

std::string figure(double value) {
  std::string text;
  appendDefault(text, value);
  return text;
}
std::string figureOrDash(double value) { return value == 0 ? "-" : figure(value); }

std::int32_t fileNode(const ChannelSurface& surface, std::int32_t node) {
  return surface.fileNumbers[static_cast<std::size_t>(node) - 1];
}

std::vector<std::string> notesOn(const Channels& channels) {
  std::vector<std::string> notes;
  for (const ChannelGroup& group : channels.groups) {
    const auto& pieces = group.pieces;
    if (pieces.openEdges > 0)
      notes.push_back(groupName(group) + ": " + std::to_string(pieces.openEdges) +
                      " edges have one face only (the first runs from node " +
                      std::to_string(fileNode(channels.surface, pieces.openEdge[0])) + " to " +
                      std::to_string(fileNode(channels.surface, pieces.openEdge[1])) +
                      "): an end, a hose or another group's surface begins there");
    constexpr double kMuch = 0.2;
    if (std::abs(group.length - group.surfaceLength) > kMuch * group.surfaceLength && group.surfaceLength > 0)
      notes.push_back(groupName(group) + ": the " + nameOf(group.lengthFrom) + " makes it " +
                      figure(group.length) + " long, its surface " + figure(group.surfaceLength));
  }
  return notes;
}

std::string surfaceAsText(const Channels& channels) {
  const auto& kinds = channels.surface.kind;
  std::string text = "surface  " + std::to_string(channels.surface.nodeCount()) + " nodes, " +
                     std::to_string(channels.surface.faceCount()) + " faces";
  for (int kind = 0; kind < 4; ++kind)
    text += std::string(kind == 0 ? ": " : ", ") +
            std::to_string(std::count(kinds.begin(), kinds.end(), kind)) + " " + kFaceKinds[kind];
  return text + "\nunit     " + (channels.unit.empty() ? "none given" : channels.unit) +
         (channels.lengthFactor == 1 ? "" : " times " + figure(channels.lengthFactor)) + "\ngroups   " +
         std::to_string(channels.groups.size()) + ", the header counts " +
         std::to_string(channels.surface.groups) + "\n";
}

std::string groupsAsText(const std::vector<ChannelGroup>& groups) {
  view::TextTable table({"group", "walls", "inlets", "outlets", "hoses", "open edges", "length", "from",
                         "wetted area", "volume", "from", "diameter"});
  for (const ChannelGroup& group : groups)
    table.add({groupName(group), std::to_string(group.walls), std::to_string(group.pieces.inlets),
               std::to_string(group.pieces.outlets), std::to_string(group.pieces.hoses),
               std::to_string(group.pieces.openEdges), figureOrDash(group.length), nameOf(group.lengthFrom),
               figureOrDash(group.wettedArea), figureOrDash(group.volume), nameOf(group.volumeFrom),
               figureOrDash(group.diameter)});
  return table.empty() ? "" : "\n" + table.text();
}

std::string markersAsText(const Markers& markers, double factor) {
  view::TextTable table({"marker", "kind", "x", "y", "z", "diameter"});
  for (std::size_t i = 1; i <= static_cast<std::size_t>(markers.count()); ++i)
    table.add({std::to_string(i), kMarkerKinds[markers.kind[i]], figure(markers.x[i] * factor),
               figure(markers.y[i] * factor), figure(markers.z[i] * factor),
               figureOrDash(markers.diameter[i] * factor)});
  return table.empty() ? "" : "\n" + table.text();
}

Json figureOrNull(double value) { return value == 0 ? Json() : Json(value); }

Json groupAsJson(const ChannelGroup& group, const ChannelSurface& surface) {
  const auto& pieces = group.pieces;
  Json json{{"group", group.group},
            {"kind", kFaceKinds[group.isHeater ? channel::kHeaterFace : channel::kCoolantFace]},
            {"faces", {{"walls", group.walls}, {"ends", group.ends}, {"hoses", group.hoses}}},
            {"elements", group.elements},
            {"inlets", pieces.inlets},
            {"outlets", pieces.outlets},
            {"hoses", pieces.hoses},
            {"closed", pieces.isClosed},
            {"openEdges", pieces.openEdges}};
  if (pieces.openEdges > 0)
    json["firstOpenEdge"] = {fileNode(surface, pieces.openEdge[0]), fileNode(surface, pieces.openEdge[1])};
  json["length"] = figureOrNull(group.length);
  json["lengthFrom"] = nameOf(group.lengthFrom);
  json["surfaceLength"] = figureOrNull(group.surfaceLength);
  json["wettedArea"] = figureOrNull(group.wettedArea);
  json["volume"] = figureOrNull(group.volume);
  json["volumeFrom"] = nameOf(group.volumeFrom);
  json["diameter"] = figureOrNull(group.diameter);
  return json;
}

Json asJson(const Channels& channels, const Options& options) {
  const auto& surface = channels.surface;
  Json json{
      {"file", options.file},         {"unit", channels.unit},        {"lengthFactor", channels.lengthFactor},
      {"nodes", surface.nodeCount()}, {"faces", surface.faceCount()}, {"headerGroups", surface.groups}};
  for (int kind = 0; kind < 4; ++kind)
    json["facesByKind"][kFaceKinds[kind]] = std::count(surface.kind.begin(), surface.kind.end(), kind);
  json["groups"] = Json::array();
  for (const auto& group : channels.groups) json["groups"].push_back(groupAsJson(group, surface));
  json["markers"] = Json::array();
  const Markers& markers = surface.markers;
  const double f = channels.lengthFactor;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(markers.count()); ++i)
    json["markers"].push_back({{"kind", kMarkerKinds[markers.kind[i]]},
                               {"position", {markers.x[i] * f, markers.y[i] * f, markers.z[i] * f}},
                               {"diameter", figureOrNull(markers.diameter[i] * f)}});
  json["notes"] = notesOn(channels);
  return json;
}

std::string asText(const Channels& channels) {
  std::string text = surfaceAsText(channels) + groupsAsText(channels.groups) +
                     markersAsText(channels.surface.markers, channels.lengthFactor);
  for (const std::string& note : notesOn(channels)) text += "\nnote: " + note;
  return text + (text.ends_with('\n') ? "" : "\n");
}

int tellChannels(const Options& options) {
  requireOtherFile(options.target, {options.file});
  const Channels channels = read(options.file);
  if (!options.target.empty()) draw(channels.surface, options.target);
  view::printText(options.json
                      ? asJson(channels, options).dump(2, ' ', false, Json::error_handler_t::replace) + "\n"
                      : asText(channels));
  return 0;
}

std::string wrongSuffix(const std::string& path) {
  return path.ends_with(".vtu") || path.ends_with(".stl") ? "" : "the output must end in .vtu or .stl";
}

}  // namespace

void addChannels(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command =
      app.add_subcommand("channels", "Tell the cooling channels of a mesh: surface, groups, inlets, outlets");
  command->add_option("MESH", options->file, "component OFE file")->required();
  command->add_option("-o,--output", options->target, "draw the channels' surface (.vtu or .stl)")
      ->check(wrongSuffix);
  command->add_flag("--json", options->json, "print it as JSON");
  command->footer(
      "Per group, in model units (the file's times its length factor):\n"
      "  length       of the layout's beams, else of the coolant lines, else volume by mean area of an end,\n"
      "               else that of a round channel of its volume and wetted area\n"
      "  wetted area  of the faces against the mold\n"
      "  volume       of the channel elements, else inside the closed surface\n"
      "  diameter     4 volume / wetted area\n"
      "  inlets, outlets, hoses: connected sets of end faces; open edges have one face only: an end or a\n"
      "  hose is missing.\n"
      "A VTU file has the cell arrays group, kind (0 other, 1 coolant, 2 heater, 3 hose), endCode (1 inlet,\n"
      "2 outlet), interface, face and the point array node.\n"
      "Example: orvmesh channels mold.ofe -o channels.vtu");
  command->callback([&job, options] { job = [options] { return tellChannels(*options); }; });
}

}  // namespace orvmesh::cli
