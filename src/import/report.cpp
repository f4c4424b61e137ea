#include "import/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/text_number.h"

namespace orvmesh::importing {
namespace {

std::string number(double value) {
  std::string text;
  appendDefault(text, value);
  return text;
}
std::string number(std::uint64_t value) {
  std::string text;
  appendInt(text, value);
  return text;
}
std::string count(std::uint64_t n, const char* one, const char* many) {
  return number(n) + " " + (n == 1 ? one : many);
}

// Rows of cells under a heading; the first two columns to the left, the others to the right.
class Table {
 public:
  explicit Table(std::vector<std::string> heading) { add(std::move(heading)); }
  void add(std::vector<std::string> cells) {
    widths_.resize(std::max(widths_.size(), cells.size()));
    for (std::size_t k = 0; k < cells.size(); ++k) widths_[k] = std::max(widths_[k], cells[k].size());
    rows_.push_back(std::move(cells));
  }
  std::string text() const {
    std::string out;
    for (const auto& row : rows_) {
      for (std::size_t k = 0; k < row.size(); ++k) {
        const std::string padding(widths_[k] - row[k].size(), ' ');
        const bool left = k < 2;
        out += "  ";
        out += left ? row[k] + padding : padding + row[k];
      }
      out.erase(out.find_last_not_of(' ') + 1);
      out += '\n';
    }
    return out;
  }

 private:
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::size_t> widths_;
};

const char* nameOfCode(std::int32_t code) {
  return code == kInlet ? "inlet" : (code == kOutlet ? "outlet" : "hose");
}

std::string pointText(const Vector& p) { return number(p[0]) + " " + number(p[1]) + " " + number(p[2]); }

std::string componentTable(const ImportReport& report) {
  Table table({"component", "from group", "elements", "volume in", "volume out"});
  for (const auto& c : report.components)
    table.add({textOf(c.role), c.groups, number(static_cast<std::uint64_t>(c.elements)), number(c.volumeIn),
               number(c.volumeOut)});
  return table.text();
}

std::string surfaceTable(const ImportReport& report) {
  const auto& s = report.surfaces;
  Table table({"interface", "surfaces", "elements"});
  table.add({"1",
             "part and hot runner (" + number(s.partOnMold) + " against mold, " + number(s.gates) +
                 " gate, " + number(s.meltInlets) + " melt inlet)",
             number(s.ofInterface[0])});
  table.add({"2", "mold against part or air", number(s.ofInterface[1])});
  table.add({"3", "channel walls", number(s.ofInterface[2])});
  table.add({"4", "channel ends", number(s.ofInterface[3])});
  return table.text();
}

std::string channelTable(const ImportReport& report) {
  if (report.channels.channels.empty()) return {};
  Table table({"channel", "end", "faces", "diameter", "center"});
  for (const auto& channel : report.channels.channels) {
    const auto name = textOf(report.components[channel.component].role);
    if (!channel.hasLine) table.add({name, "none: no line is written", "0", number(channel.diameter), "-"});
    for (const auto& end : report.channels.ends)
      if (end.component == channel.component)
        table.add({name, std::string(nameOfCode(end.code)) + (end.named ? "" : " (by its place)"),
                   number(end.faces), number(channel.diameter), pointText(end.center)});
  }
  return table.text();
}

std::string sensorTable(const ImportReport& report) {
  if (report.sensors.empty()) return {};
  static constexpr const char* kPlaces[] = {"part element", "part node", "surface",
                                            "mold element", "mold node", "node"};
  Table table({"sensor", "on", "number"});
  for (const auto& s : report.sensors)
    table.add({textOf({RoleKind::sensor, s.type, s.display}), kPlaces[s.type - 1], std::to_string(s.ids[0])});
  return table.text();
}

// What was changed or left out, a line each.
std::vector<std::string> notes(const ImportReport& report) {
  std::vector<std::string> lines;
  const auto note = [&lines](std::uint64_t n, const std::string& text) {
    if (n > 0) lines.push_back(text);
  };
  const auto unused = static_cast<std::uint64_t>(report.unusedNodes);
  const auto joined = static_cast<std::uint64_t>(report.joinedNodes);
  note(report.turned, "turned: " + count(report.turned, "inverted element", "inverted elements"));
  note(report.secondOrder, "reduced to corner nodes: " +
                               count(report.secondOrder, "second-order element", "second-order elements"));
  note(joined, "joined: " + count(joined, "coincident node", "coincident nodes"));
  note(unused, std::string(report.unusedDropped ? "dropped: " : "kept: ") +
                   count(unused, "node of no written element", "nodes of no written element") +
                   (report.unusedDropped ? "" : " (--drop-unused drops them)"));
  for (const auto& ignored : report.ignored)
    note(ignored.elements,
         "ignored: " + ignored.what + ", " + count(ignored.elements, "element", "elements"));
  note(report.flat, "warning: " + count(report.flat, "element has", "elements have") + " no volume");
  const auto bad = report.bad[0] + report.bad[1] + report.bad[2];
  note(bad, "listed as bad: part " + number(report.bad[0]) + ", mold " + number(report.bad[1]) +
                ", channel " + number(report.bad[2]) + " (quality below " + number(report.badQuality) + ")");
  note(report.facesWithout, "warning: " + count(report.facesWithout, "face of a group", "faces of groups") +
                                " with a boundary-condition name " +
                                (report.facesWithout == 1 ? "lies" : "lie") + " on no surface element");
  note(report.overlaps, "warning: " + count(report.overlaps, "face is", "faces are") +
                            " seen from the same side by two elements (they overlap)");
  const bool bothPresent = report.surfaces.ofInterface[0] > 0 && report.surfaces.ofInterface[1] > 0;
  note(bothPresent && report.surfaces.partOnMold == 0 ? 1 : 0,
       "warning: no part face touches the mold; the meshes share no nodes there (--merge TOL joins them)");
  return lines;
}

}  // namespace

std::string reportText(const ImportReport& report) {
  std::uint64_t elements = 0;
  for (const auto& c : report.components) elements += static_cast<std::uint64_t>(c.elements);
  std::string text = report.mesh + " (" + report.format + ") -> " + report.target + ": " +
                     number(static_cast<std::uint64_t>(report.nodes)) + " nodes, " + number(elements) +
                     " volume elements\n";
  text += componentTable(report) + surfaceTable(report) + channelTable(report) + sensorTable(report);
  if (report.conditions > 0) text += "  boundary conditions: " + number(report.conditions) + "\n";
  if (report.namedSurfaces > 0)
    text += "  surfaces with condition names: " + number(report.namedSurfaces) + "\n";
  for (const auto& line : notes(report)) text += "  " + line + "\n";
  return text;
}

std::string reportJson(const ImportReport& report) {
  using nlohmann::json;
  json out{{"mesh", report.mesh},
           {"format", report.format},
           {"target", report.target},
           {"nodes", report.nodes},
           {"boundaryConditions", report.conditions},
           {"namedSurfaces", report.namedSurfaces},
           {"facesWithoutSurface", report.facesWithout},
           {"badElements", {{"part", report.bad[0]}, {"mold", report.bad[1]}, {"channel", report.bad[2]}}},
           {"components", json::array()},
           {"surfaces",
            {{"1", report.surfaces.ofInterface[0]},
             {"2", report.surfaces.ofInterface[1]},
             {"3", report.surfaces.ofInterface[2]},
             {"4", report.surfaces.ofInterface[3]},
             {"partOnMold", report.surfaces.partOnMold},
             {"gates", report.surfaces.gates},
             {"meltInlets", report.surfaces.meltInlets}}},
           {"channels", json::array()},
           {"ends", json::array()},
           {"sensors", json::array()},
           {"ignored", json::array()},
           {"turned", report.turned},
           {"secondOrder", report.secondOrder},
           {"joinedNodes", report.joinedNodes},
           {"unusedNodes", report.unusedNodes},
           {"unusedDropped", report.unusedDropped},
           {"notes", notes(report)}};
  for (const auto& c : report.components)
    out["components"].push_back({{"role", textOf(c.role)},
                                 {"groups", c.groups},
                                 {"elements", c.elements},
                                 {"volumeIn", c.volumeIn},
                                 {"volumeOut", c.volumeOut}});
  for (const auto& c : report.channels.channels)
    out["channels"].push_back({{"role", textOf(report.components[c.component].role)},
                               {"diameter", c.diameter},
                               {"wallArea", c.wallArea}});
  for (const auto& e : report.channels.ends)
    out["ends"].push_back({{"channel", textOf(report.components[e.component].role)},
                           {"end", nameOfCode(e.code)},
                           {"named", e.named},
                           {"faces", e.faces},
                           {"area", e.area},
                           {"center", e.center}});
  for (const auto& s : report.sensors)
    out["sensors"].push_back({{"type", s.type}, {"display", s.display}, {"number", s.ids[0]}});
  for (const auto& i : report.ignored) out["ignored"].push_back({{"what", i.what}, {"elements", i.elements}});
  return out.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace orvmesh::importing
