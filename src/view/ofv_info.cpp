#include <nlohmann/json.hpp>

#include "base/text_number.h"
#include "view/ofv_read.h"
#include "view/text_table.h"

namespace orvmesh::view {
namespace {

std::string number(std::int64_t n) { return std::to_string(n); }
std::string real(double x) {
  std::string text;
  appendDefault(text, x);
  return text;
}
std::string point(const std::array<double, 3>& p) { return real(p[0]) + ' ' + real(p[1]) + ' ' + real(p[2]); }

const char* kindOf(std::int32_t kind) { return kind == kCavityChannel ? "channel" : "other"; }

// More rows than this tell nobody anything; JSON has them all.
constexpr std::size_t kMostRows = 60;

std::string tableText(const TextTable& table, std::size_t rows) {
  if (rows == 0) return {};
  const std::string more =
      rows > kMostRows ? "... and " + std::to_string(rows - kMostRows) + " more rows\n" : "";
  return '\n' + table.text() + more;
}

std::string cavityTable(const OFVMesh& mesh, const OfvSummary& summary) {
  TextTable table({"cavity", "kind", "cells", "volume"});
  for (std::size_t i = 0; i < std::min(kMostRows, mesh.cavityNumber.size()); ++i)
    table.add({number(mesh.cavityNumber[i]), kindOf(mesh.cavityKind[i]), number(summary.cells[i]),
               real(summary.volumes[i])});
  return tableText(table, mesh.cavityNumber.size());
}

std::string inletTable(const OFVMesh& mesh) {
  TextTable table({"inlet", "channel group"});
  for (std::size_t i = 0; i < std::min(kMostRows, mesh.inletID.size()); ++i)
    table.add({number(mesh.inletID[i]), number(mesh.inletGroup[i])});
  return tableText(table, mesh.inletID.size());
}

}  // namespace

std::string ofvInfoAsText(const std::string& path) {
  const OfvFile file(path);
  const OFVMesh& mesh = file.mesh();
  const OfvSummary summary = summaryOf(mesh);
  std::string out = "file            " + path + "\nformat          OFV finite-volume mesh, version 1\n";
  out += "points          " + number(mesh.pointCount()) + "\n";
  if (mesh.pointCount() > 0)
    out += "bounding box    " + point(summary.boxMin) + " to " + point(summary.boxMax) + "\n";
  out += "cells           " + number(mesh.cellCount()) + "\n";
  out += "faces           " + number(mesh.faceCount()) + " (" + number(summary.interiorFaces) +
         " between two cells, " + number(summary.boundaryFaces) + " on the boundary)\n";
  out += "cavities        " + number(mesh.cavityCount()) + "\n";
  out += "inlets          " + number(static_cast<std::int64_t>(mesh.inletID.size())) + "\n";
  return out + cavityTable(mesh, summary) + inletTable(mesh);
}

std::string ofvInfoAsJson(const std::string& path) {
  using Json = nlohmann::ordered_json;
  const OfvFile file(path);
  const OFVMesh& mesh = file.mesh();
  const OfvSummary summary = summaryOf(mesh);
  Json json{{"file", path}, {"format", "ofv"}, {"points", mesh.pointCount()}};
  if (mesh.pointCount() > 0) json["boundingBox"] = {summary.boxMin, summary.boxMax};
  json["cells"] = mesh.cellCount();
  json["faces"] = {
      {"all", mesh.faceCount()}, {"interior", summary.interiorFaces}, {"boundary", summary.boundaryFaces}};
  json["cavities"] = Json::array();
  for (std::size_t i = 0; i < mesh.cavityNumber.size(); ++i)
    json["cavities"].push_back({{"number", mesh.cavityNumber[i]},
                                {"kind", kindOf(mesh.cavityKind[i])},
                                {"cells", summary.cells[i]},
                                {"volume", summary.volumes[i]}});
  json["inlets"] = Json::array();
  for (std::size_t i = 0; i < mesh.inletID.size(); ++i)
    json["inlets"].push_back({{"id", mesh.inletID[i]}, {"channelGroup", mesh.inletGroup[i]}});
  constexpr auto kReplace = Json::error_handler_t::replace;
  return json.dump(2, ' ', false, kReplace) + '\n';
}

}  // namespace orvmesh::view
