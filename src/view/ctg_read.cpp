#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "base/face_tables.h"
#include "base/text_number.h"
#include "view/ctg_lines.h"
#include "view/ctg_mesh.h"

namespace orvmesh::view {
namespace {

constexpr std::size_t kNodeSlots = 27;
constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

// A line "key = value" of the header: a count, a fixed value, or anything.
struct HeaderLine {
  const char* key;
  CtgCount count;
  const char* value;
};
constexpr HeaderLine kHeader[] = {{"Version", kCtgCounts, "1004"},
                                  {"Source", kCtgCounts, nullptr},
                                  {"SourceID", kCtgCounts, nullptr},
                                  {"Initial Level", kCtgCounts, nullptr},
                                  {"Plastic Level", kCtgCounts, nullptr},
                                  {"Cool Level", kCtgCounts, nullptr},
                                  {"HT Level", kCtgCounts, nullptr},
                                  {"VP Level", kCtgCounts, nullptr},
                                  {"SE Level", kCtgCounts, nullptr},
                                  {"Element", kCtgElements, nullptr},
                                  {"Node", kCtgNodes, nullptr},
                                  {"Face", kCtgFaces, nullptr},
                                  {"Plastic Boundary Node", kCtgPlasticNodes, nullptr},
                                  {"Cool Boundary Node", kCtgCoolNodes, nullptr},
                                  {"Air Boundary Node", kCtgAirNodes, nullptr},
                                  {"Plastic Boundary Face", kCtgPlasticFaces, nullptr},
                                  {"Cool Boundary Face", kCtgCoolFaces, nullptr},
                                  {"Air Boundary Face", kCtgAirFaces, nullptr},
                                  {"OFE Plastic Boundary Face", kCtgOfePlasticFaces, nullptr},
                                  {"OFE Part Insert Node", kCtgInsertNodes, nullptr},
                                  {"Boundary Element", kCtgBoundaryElements, nullptr},
                                  {"Sensor in Moldbase Number", kCtgSensors, nullptr},
                                  {"Inlet Boundary Face", kCtgInletFaces, nullptr},
                                  {"Outlet Boundary Face", kCtgOutletFaces, nullptr},
                                  {"Part Kernel Veriosn", kCtgCounts, nullptr}};

class Reader {
 public:
  explicit Reader(const std::string& path) : lines_(path) { mesh_.path = path; }

  CtgMesh read() {
    header();
    section("Node", kCtgNodes, [this](CtgNumbers& line) { node(line); });
    section("Element Node", kCtgElements, [this](CtgNumbers& line) { elementNodes(line); });
    section("Element Property", kCtgElements, [this](CtgNumbers& line) { property(line); });
    section("Element Face", kCtgElements, [this](CtgNumbers& line) { elementFaces(line); });
    section("Face", kCtgFaces, [this](CtgNumbers& line) { face(line); });
    boundaries();
    section("OFE Part Insert Node", kCtgInsertNodes, nothing);
    section("Boundary Element", kCtgBoundaryElements, nothing);
    section("Moldbase Sensor Mapping", kCtgSensors, nothing);
    section("Inlet Face", kCtgInletFaces, nothing);
    section("Outlet Face", kCtgOutletFaces, nothing);
    if (std::string_view line; lines_.next(line))
      lines_.fail("stands behind the end of the last section (legal: nothing)");
    return std::move(mesh_);
  }

 private:
  std::string_view line(const std::string& legal) {
    std::string_view found;
    if (!lines_.next(found)) lines_.fail("the file ends here (legal: " + legal + ")");
    return found;
  }
  void expect(const std::string& legal) {
    if (const std::string_view found = line(legal); found != legal)
      lines_.fail("is " + shown(found) + " (legal: " + legal + ")");
  }

  void header() {
    expect("[Header]");
    for (const HeaderLine& wanted : kHeader) {
      const std::string key = std::string(wanted.key) + " = ";
      const std::string_view found = line(key + "...");
      if (!found.starts_with(key)) lines_.fail("is " + shown(found) + " (legal: " + key + "...)");
      const std::string_view value = found.substr(key.size());
      if (wanted.value != nullptr && value != wanted.value)
        lines_.fail("is " + shown(found) + " (legal: " + key + wanted.value + ")");
      if (wanted.count == kCtgCounts) continue;
      const auto count = parseNumber<std::int32_t>(value);
      if (!count || *count < 0) lines_.fail(key + "is no count (legal: 0 to 2147483647)");
      mesh_.counts[wanted.count] = *count;
    }
    expect("[/Header]");
  }

  // Calls use(numbers) for every line of the section; its size is that count of the header, if any.
  template <class Use>
  void section(const std::string& name, CtgCount count, Use use) {
    expect("[" + name + "]");
    const std::string end = "[/" + name + "]";
    const std::int64_t most = count == kCtgCounts ? kMost : mesh_.counts[count];
    std::int64_t entries = 0;
    for (std::string_view text = line(end); text != end; text = line(end)) {
      if (entries == most)
        lines_.fail("is one too many: the header counts " + std::to_string(most) + " (legal: " + end + ")");
      CtgNumbers numbers(lines_, text);
      numbers.expectKey(++entries);
      use(numbers);
      numbers.expectEnd();
    }
    if (count != kCtgCounts && entries != most)
      lines_.fail("ends " + name + " with " + std::to_string(entries) +
                  " lines (legal: " + std::to_string(most) + ", as the header counts)");
  }
  static void nothing(CtgNumbers& line) { line.fail("this section must be empty"); }

  void node(CtgNumbers& line) {
    for (const char* axis : {"x", "y", "z"}) mesh_.xyz.push_back(line.real(axis));
  }

  void elementNodes(CtgNumbers& line) {
    std::size_t used = 0;
    for (std::size_t slot = 0; slot < kNodeSlots; ++slot) {
      const std::int32_t node = line.integer("a node", 0, mesh_.counts[kCtgNodes]);
      if (node == 0) continue;
      if (used++ != slot) line.fail("has a node behind an empty slot (legal: 0 at the end only)");
      mesh_.elementNodes.push_back(node);
    }
    mesh_.nodeOffsets.push_back(mesh_.elementNodes.size());
  }

  void property(CtgNumbers& line) {
    mesh_.property.push_back(line.integer("the property", -kMost - 1, kMost));
    line.integer("the second number", 0, 0);
  }

  void elementFaces(CtgNumbers& line) {
    const std::size_t e = mesh_.faceOffsets.size() - 1;
    const auto nodes = mesh_.nodeOffsets[e + 1] - mesh_.nodeOffsets[e];
    const auto faces = static_cast<std::int32_t>(facesOf(static_cast<int>(nodes)).size());
    line.integer("the number of faces", faces, faces);
    const std::int32_t most = mesh_.counts[kCtgFaces];
    for (std::int32_t j = 0; j < faces; ++j)
      mesh_.elementFaces.push_back(line.integer("a face", -most, most));
    mesh_.faceOffsets.push_back(mesh_.elementFaces.size());
  }

  // Numbers of the source mesh, whose size the file does not tell.
  void face(CtgNumbers& line) {
    std::array<std::int32_t, 4> nodes{};
    for (std::size_t k = 0; k < 4; ++k) nodes[k] = line.integer("a node", k == 3 ? 0 : 1, kMost);
    mesh_.faces.push_back(nodes);
  }

  // Boundary nodes without a number (0) may stand anywhere.
  static void expectAscending(const CtgNumbers& line, std::int32_t& last, std::int32_t entity) {
    if (entity == 0) return;
    if (entity <= last)
      line.fail("names " + std::to_string(entity) + " behind " + std::to_string(last) +
                " (legal: ascending numbers)");
    last = entity;
  }

  void boundaries() {
    // The header counts surface elements in the place of boundary nodes, so that these sizes say nothing.
    const auto entries = [this](const char* name, CtgCount count, std::vector<CtgBoundaryEntry>& list,
                                std::int64_t least, std::int64_t most, std::int64_t lastBoundary) {
      section(name, count, [&list, least, most, lastBoundary, last = 0](CtgNumbers& line) mutable {
        const std::int32_t entity = line.integer(least == 0 ? "a node" : "a face", least, most);
        expectAscending(line, last, entity);
        list.push_back({entity, line.integer("the boundary", lastBoundary == 0 ? 0 : 1, lastBoundary)});
      });
    };
    const auto plasticFaces = [this](const char* name, CtgCount count, std::vector<CtgBoundaryEntry>& list) {
      section(name, count, [&, last = 0](CtgNumbers& line) mutable {
        const std::int32_t face = line.integer("a face", 1, mesh_.counts[kCtgFaces]);
        line.integer("the second number", 1, 1);
        line.integer("the face again", face, face);
        expectAscending(line, last, face);
        list.push_back({face, 0});
      });
    };
    const std::int64_t nodes = mesh_.counts[kCtgNodes];
    const std::int64_t faces = mesh_.counts[kCtgFaces];
    entries("Plastic Boundary Node", kCtgCounts, mesh_.plasticNodes, 0, nodes, 0);
    entries("Cool Boundary Node", kCtgCounts, mesh_.coolNodes, 0, nodes, kMost);
    entries("Air Boundary Node", kCtgCounts, mesh_.airNodes, 0, nodes, 0);
    plasticFaces("Plastic Boundary Face", kCtgPlasticFaces, mesh_.plasticFaces);
    entries("Cool Boundary Face", kCtgCoolFaces, mesh_.coolFaces, 1, faces, kMost);
    entries("Air Boundary Face", kCtgAirFaces, mesh_.airFaces, 1, faces, 0);
    plasticFaces("OFE Plastic Boundary Face", kCtgOfePlasticFaces, mesh_.ofePlasticFaces);
  }

  CtgLines lines_;
  CtgMesh mesh_;
};

}  // namespace

CtgMesh readCtg(const std::string& path) { return Reader(path).read(); }

}  // namespace orvmesh::view
