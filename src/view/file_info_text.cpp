#include <algorithm>

#include "base/text_number.h"
#include "view/file_info.h"
#include "view/json_complaint.h"
#include "view/text_table.h"

namespace orvmesh::view {
namespace {

// More rows than this tell nobody anything; `--json` has them all.
constexpr std::size_t kMostRows = 60;

std::string number(std::int64_t value) { return std::to_string(value); }
std::string number(double value) {
  std::string text;
  appendDefault(text, value);
  return text;
}

std::string point(const std::array<double, 3>& p) {
  return number(p[0]) + " " + number(p[1]) + " " + number(p[2]);
}

void addLine(std::string& out, std::string_view label, std::string_view value) {
  out.append(label).append(label.size() < 16 ? 16 - label.size() : 1, ' ').append(value) += '\n';
}

void addHead(std::string& out, const FileInfo& info) {
  const OFEHeader& header = info.header;
  addLine(out, "file", info.path);
  addLine(out, "version",
          number(std::int64_t{header[m_HEADER_Version]}) + ", written as " +
              number(std::int64_t{info.writtenVersion}));
  addLine(out, "source", shownText(header.source));
  addLine(out, "date and time", shownText(header.dateTime));
  addLine(out, "unit", shownText(header.unit));
  addLine(out, "remark", shownText(header.remark));
  addLine(out, "length factor", number(info.lengthFactor));
  addLine(out, "nodes", number(info.nodes));
  if (info.nodes > 0) addLine(out, "bounding box", point(info.boxMin) + " to " + point(info.boxMax));
}

// Prints the rows of a map under a heading, the first kMostRows of them.
template <class Map, class Row>
void addTable(std::string& out, std::vector<std::string> heading, const Map& map, const Row& row) {
  if (map.empty()) return;
  TextTable table(std::move(heading));
  std::size_t rows = 0;
  for (const auto& [key, value] : map)
    if (rows++ < kMostRows) table.add(row(key, value));
  out += '\n' + table.text();
  if (rows > kMostRows) out += "... and " + std::to_string(rows - kMostRows) + " more rows\n";
}

void addComponent(std::string& out, const FileInfo& info, std::size_t index) {
  const ComponentInfo& component = info.components[index];
  if (component.elements == 0) return;
  std::vector<std::string> heading{std::string(component.name), index == 2 ? "kind" : "material", "group",
                                   "elements"};
  heading.insert(heading.end(), kElementTypes.begin(), kElementTypes.end());
  addTable(out, heading, component.parts, [&](const auto& key, const TypeCounts& types) {
    std::int64_t sum = 0;
    for (const auto count : types) sum += count;
    std::vector<std::string> row{std::string(roleOf(index, key.first, key.second)),
                                 number(std::int64_t{key.first}), number(std::int64_t{key.second}),
                                 number(sum)};
    for (const auto count : types) row.push_back(number(count));
    return row;
  });
  out += number(component.elements) + " elements, " + number(component.bad) + " bad\n";
}

void addSurfaces(std::string& out, const FileInfo& info) {
  addTable(out, {"interface", "boundary type", "surfaces", "triangles", "quadrangles", "with list"},
           info.interfaces, [](const auto& key, const SurfaceInfo& counts) {
             return std::vector<std::string>{number(std::int64_t{key.first}),
                                             number(std::int64_t{key.second}),
                                             number(counts.triangles + counts.quadrangles),
                                             number(counts.triangles),
                                             number(counts.quadrangles),
                                             number(counts.withList)};
           });
  if (info.surfaces > 0) out += number(info.surfaces) + " surfaces\n";
  addTable(out, {"condition", "entries"}, info.conditions, [](const std::string& code, std::int64_t count) {
    return std::vector<std::string>{code, number(count)};
  });
}

void addOthers(std::string& out, const FileInfo& info) {
  static constexpr const char* kSensors[] = {"part element sensors", "part node sensors",
                                             "surface sensors",      "mold element sensors",
                                             "mold node sensors",    "sensors of kind 6"};
  TextTable table({"other entries", "count"});
  for (std::size_t i = 0; i < info.sensors.size(); ++i)
    if (info.sensors[i] != 0) table.add({kSensors[i], number(info.sensors[i])});
  for (const auto& [name, count] : info.others)
    if (count != 0) table.add({name, number(count)});
  if (!table.empty()) out += '\n' + table.text();
}

}  // namespace

std::string fileInfoAsText(const FileInfo& info) {
  std::string out;
  addHead(out, info);
  for (std::size_t i = 0; i < info.components.size(); ++i) addComponent(out, info, i);
  addSurfaces(out, info);
  addOthers(out, info);
  if (!info.notes.empty() || !info.warnings.empty()) out += '\n';
  for (const auto& note : info.notes) out += "note: " + note + '\n';
  for (const auto& warning : info.warnings) out += "warning: " + warning + '\n';
  return out;
}

}  // namespace orvmesh::view
