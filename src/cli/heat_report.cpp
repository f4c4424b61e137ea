#include "cli/heat_report.h"

#include <nlohmann/json.hpp>

#include "base/text_number.h"

namespace orvmesh::cli {
namespace {

using heatsource::Box;
using heatsource::ComsolReport;
using heatsource::LineList;
using heatsource::ValueSum;
using Json = nlohmann::ordered_json;

// What may be wrong with rows, in words that follow their number.
struct RowFault {
  LineList ComsolReport::*rows;
  const char* key;
  const char* what;
};
constexpr RowFault kFaults[] = {
    {&ComsolReport::nowhere, "dropped", "dropped, a coordinate is not finite"},
    {&ComsolReport::notANumber, "nan", "with a value that is no number (NaN)"},
    {&ComsolReport::infinite, "infinite", "with an infinite value"},
    {&ComsolReport::blank, "blank", "blank, points at 0 0 0 with value 0"},
    {&ComsolReport::incomplete, "incomplete", "without four numbers, what is missing counts as 0"},
};

std::string text(double value) {
  std::string out;
  appendDefault(out, value);
  return out;
}

std::string boxText(const Box& box) {
  std::string out;
  for (std::size_t axis = 0; axis < 3; ++axis)
    out += (axis == 0 ? "" : " x ") + text(box.low[axis]) + ".." + text(box.high[axis]);
  return out;
}

std::string linesText(const LineList& rows) {
  std::string out = rows.count == 1 ? "line" : "lines";
  for (std::size_t i = 0; i < rows.first.size(); ++i)
    out += (i == 0 ? " " : ", ") + std::to_string(rows.first[i]);
  return rows.count > static_cast<std::int64_t>(rows.first.size()) ? out + ", ..." : out;
}

std::string rowsText(const ComsolReport& report) {
  std::string out = "points      " + std::to_string(report.rows) + " rows of " +
                    std::to_string(report.points) + " announced points\n";
  for (const RowFault& fault : kFaults)
    if (const LineList& rows = report.*fault.rows; rows.count > 0)
      out += "            " + std::to_string(rows.count) + " " + fault.what + " (" + linesText(rows) + ")\n";
  if (report.moreColumns > 0)
    out += "            " + std::to_string(report.longer.count) + " with more columns, up to " +
           std::to_string(report.moreColumns) + " ignored\n";
  return out;
}

std::string sumText(const char* label, const ValueSum& sum) {
  return label + text(sum.smallest) + " to " + text(sum.largest) + " W/cm2, mean " + text(sum.mean()) +
         ", sum " + text(sum.total) + " over " + std::to_string(sum.count) + "\n";
}

Json boxJson(const Box& box) {
  if (box.points == 0) return {};
  return {{"low", box.low}, {"high", box.high}};
}

Json sumJson(const ValueSum& sum) {
  if (sum.count == 0) return {{"count", 0}};
  return {{"count", sum.count},
          {"smallest", sum.smallest},
          {"largest", sum.largest},
          {"mean", sum.mean()},
          {"sum", sum.total}};
}

Json rowsJson(const ComsolReport& report) {
  Json json{{"announced", report.points}, {"rows", report.rows}, {"missing", report.points - report.rows}};
  for (const RowFault& fault : kFaults)
    json[fault.key] = {{"count", (report.*fault.rows).count}, {"lines", (report.*fault.rows).first}};
  json["ignoredColumns"] = report.moreColumns;
  json["columns"] = report.columns;
  json["description"] = report.description;
  json["lengthUnit"] = report.lengthUnit;
  json["blocks"] = report.blocks;
  return json;
}

std::vector<std::string> boxWarnings(const HeatJob& job) {
  const Box& points = job.map.pointBox;
  const Box& nodes = job.map.nodeBox;
  if (points.points == 0 || nodes.points == 0) return {};
  const std::string boxes = "points (in cm) " + boxText(points) + ", mesh " + boxText(nodes);
  std::vector<std::string> found;
  if (const double factor = unitMistake(job.map); factor != 0)
    found.push_back("the points' box is " + text(factor < 1 ? 1 / factor : factor) + " times " +
                    (factor < 1 ? "smaller" : "larger") +
                    " than the mesh, which looks like a mistake of units: " + boxes);
  if (!points.touches(nodes)) found.push_back("points and mesh do not overlap: " + boxes);
  return found;
}

// A mesh in another unit is brought to cm by its length factor.
void warnOfMeshUnit(const HeatJob& job, std::vector<std::string>& found) {
  struct Unit {
    const char* name;
    const char* factor;
  };
  constexpr Unit kUnits[] = {{"mm", "0.1"}, {"m", "100"}, {"inch", "2.54"}, {"in", "2.54"}};
  if (job.lengthFactor != 1) return;
  for (const Unit& unit : kUnits)
    if (job.meshUnit == unit.name)
      found.push_back(job.mesh + " is in " + unit.name +
                      ", it is read as cm (to make it so: orvmesh import --scale " + unit.factor + ")");
}

}  // namespace

std::string heatAsText(const HeatJob& job) {
  const ComsolReport& report = job.report;
  std::string out;
  if (!report.description.empty()) out += "table       " + report.description + "\n";
  out += "columns     " + report.columns + "\n" + rowsText(report);
  out +=
      sumText("            ", job.map.points) + "nodes       " + std::to_string(job.map.mapped) + " mapped\n";
  out += sumText("            ", job.map.nodes) + view::distancesAsText(job.distances, "cm");
  if (job.hasTimes) out += "heating     active from " + text(job.start) + " to " + text(job.end) + "\n";
  return out + job.target + " and " + job.surfaceTarget + " written\n";
}

std::string heatAsJson(const HeatJob& job) {
  Json json{{"file", job.table},
            {"mesh", job.mesh},
            {"points", rowsJson(job.report)},
            {"mappedNodes", job.map.mapped},
            {"pointValues", sumJson(job.map.points)},
            {"nodeValues", sumJson(job.map.nodes)},
            {"pointBox", boxJson(job.map.pointBox)},
            {"meshBox", boxJson(job.map.nodeBox)},
            {"distances", view::distancesAsJson(job.distances)},
            {"warnings", heatWarnings(job)},
            {"written", {job.target, job.surfaceTarget}}};
  if (job.hasTimes) json["heating"] = {{"start", job.start}, {"end", job.end}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::vector<std::string> heatWarnings(const HeatJob& job) {
  const ComsolReport& report = job.report;
  std::vector<std::string> found = boxWarnings(job);
  const auto warnOf = [&found](std::int64_t count, const std::string& what) {
    if (count > 0) found.push_back(std::to_string(count) + " " + what);
  };
  if (!report.lengthUnit.empty() && report.lengthUnit != "m")
    found.push_back("the table says that its length unit is " + report.lengthUnit + "; it is read as m");
  warnOfMeshUnit(job, found);
  if (!report.error.empty()) found.push_back(report.error);
  warnOf(report.points - report.rows,
         "of the announced points are missing, the file ends before them; they count as points at 0 0 0 with "
         "value 0");
  warnOf(job.map.onEmptyRows, "nodes took their value from a missing, blank or incomplete row");
  warnOf(job.map.notFinite, "nodes took a value that is not finite");
  warnOf(report.cutLines, "lines are longer than 64 KiB; the rest of them was not read");
  if (report.blocks > 1)
    found.push_back("the file holds " + std::to_string(report.blocks) + " tables; the last one was taken");
  if (job.hasTimes && !(job.start <= job.end))
    found.push_back("the heating ends before it starts: it is never active");
  return found;
}

}  // namespace orvmesh::cli
