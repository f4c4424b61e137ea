#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "base/descriptor.h"
#include "base/text_number.h"
#include "view/ctg_mesh.h"
#include "view/file_info.h"
#include "view/text_table.h"

namespace orvmesh::view {
namespace {

struct Boundary {
  const char* name;
  const std::vector<CtgBoundaryEntry>* nodes;
  const std::vector<CtgBoundaryEntry>* faces;
  CtgCount surfaces;  // what the header counts as nodes
};

std::array<Boundary, 3> boundariesOf(const CtgMesh& mesh) {
  return {{{"plastic", &mesh.plasticNodes, &mesh.plasticFaces, kCtgPlasticNodes},
           {"cool", &mesh.coolNodes, &mesh.coolFaces, kCtgCoolNodes},
           {"air", &mesh.airNodes, &mesh.airFaces, kCtgAirNodes}}};
}

std::map<std::int32_t, std::int64_t> propertiesOf(const CtgMesh& mesh) {
  std::map<std::int32_t, std::int64_t> counts;
  for (const std::int32_t property : mesh.property) ++counts[property];
  return counts;
}

TypeCounts typesOf(const CtgMesh& mesh) {
  TypeCounts types{};
  for (std::size_t e = 0; e < mesh.property.size(); ++e) {
    const std::size_t nodes = mesh.nodeOffsets[e + 1] - mesh.nodeOffsets[e];
    ++types[nodes == 8 ? 3 : 4 <= nodes && nodes <= 6 ? nodes - 4 : 4];
  }
  return types;
}

// Least and greatest coordinate of each axis; zeros without nodes.
std::array<std::array<double, 3>, 2> boxOf(const CtgMesh& mesh) {
  std::array<std::array<double, 3>, 2> box{};
  for (std::size_t d = 0; d < 3 && !mesh.xyz.empty(); ++d) {
    box[0][d] = box[1][d] = mesh.xyz[d];
    for (std::size_t i = d; i < mesh.xyz.size(); i += 3) {
      box[0][d] = std::min(box[0][d], mesh.xyz[i]);
      box[1][d] = std::max(box[1][d], mesh.xyz[i]);
    }
  }
  return box;
}

std::string number(std::int64_t n) { return std::to_string(n); }
std::string point(const std::array<double, 3>& p) {
  std::string text;
  for (const double x : p) {
    if (!text.empty()) text += ' ';
    appendDefault(text, x);
  }
  return text;
}

std::string boundaryTable(const CtgMesh& mesh) {
  TextTable table({"boundary", "surfaces", "nodes", "faces"});
  for (const Boundary& boundary : boundariesOf(mesh))
    table.add({boundary.name, number(mesh.counts[boundary.surfaces]),
               number(static_cast<std::int64_t>(boundary.nodes->size())),
               number(static_cast<std::int64_t>(boundary.faces->size()))});
  return table.text();
}

// More rows than this tell nobody anything; JSON has them all.
constexpr std::size_t kMostRows = 60;

std::string propertyTable(const CtgMesh& mesh) {
  const auto properties = propertiesOf(mesh);
  TextTable table({"property", "elements"});
  std::size_t rows = 0;
  for (const auto& [property, count] : properties)
    if (rows++ < kMostRows) table.add({number(property), number(count)});
  if (rows == 0) return {};
  const std::string more =
      rows > kMostRows ? "... and " + number(static_cast<std::int64_t>(rows - kMostRows)) + " more rows\n"
                       : "";
  return '\n' + table.text() + more;
}

}  // namespace

bool looksLikeCtg(const std::string& path) {
  const Descriptor file(openToRead(path.c_str()));
  char first = '0';
  if (readSome(file.number(), &first, 1) < 1) first = ' ';
  return first == '[' || (path.ends_with(".ctg") && first != '0');
}

std::string ctgInfoAsText(const std::string& path) {
  const CtgMesh mesh = readCtg(path);
  const CtgSummary summary = checkCtg(mesh);
  const auto box = boxOf(mesh);
  const TypeCounts types = typesOf(mesh);
  std::string out = "file            " + path + "\nformat          CTG text mesh, version 1004\n";
  out += "nodes           " + number(mesh.counts[kCtgNodes]) + "\n";
  if (!mesh.xyz.empty()) out += "bounding box    " + point(box[0]) + " to " + point(box[1]) + "\n";
  out += "elements        " + number(mesh.counts[kCtgElements]) + "\n";
  for (std::size_t i = 0; i < types.size(); ++i)
    if (types[i] != 0) out += "  " + std::string(kElementTypes[i]) + " " + number(types[i]) + "\n";
  out += "faces           " + number(mesh.counts[kCtgFaces]) + " (" + number(summary.interiorFaces) +
         " between two elements, " + number(summary.boundaryFaces) + " of one element, of these " +
         number(summary.untypedBoundaryFaces) + " on no boundary)\n";
  out += '\n' + boundaryTable(mesh) + propertyTable(mesh);
  return out;
}

std::string ctgInfoAsJson(const std::string& path) {
  using Json = nlohmann::ordered_json;
  const CtgMesh mesh = readCtg(path);
  const CtgSummary summary = checkCtg(mesh);
  Json json{{"file", path}, {"format", "ctg"}, {"nodes", mesh.counts[kCtgNodes]}};
  if (!mesh.xyz.empty()) json["boundingBox"] = boxOf(mesh);
  json["elements"] = mesh.counts[kCtgElements];
  const TypeCounts types = typesOf(mesh);
  for (std::size_t i = 0; i < types.size(); ++i) json["types"][kElementTypes[i]] = types[i];
  json["faces"] = {{"all", mesh.counts[kCtgFaces]},
                   {"interior", summary.interiorFaces},
                   {"boundary", summary.boundaryFaces},
                   {"untypedBoundary", summary.untypedBoundaryFaces}};
  for (const Boundary& boundary : boundariesOf(mesh))
    json["boundaries"][boundary.name] = {{"surfaces", mesh.counts[boundary.surfaces]},
                                         {"nodes", boundary.nodes->size()},
                                         {"faces", boundary.faces->size()}};
  json["properties"] = Json::object();
  for (const auto& [property, count] : propertiesOf(mesh)) json["properties"][number(property)] = count;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace orvmesh::view
