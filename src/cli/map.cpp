#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/other_file.h"
#include "base/text_number.h"
#include "channel/result_map.h"
#include "channel/surface_node_map.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "platform/cofedata.h"
#include "view/distance_summary.h"
#include "view/export_vtu.h"
#include "view/ofv_read.h"
#include "view/point_table.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string file, points, values, target;
  bool json = false, stl = false;
};

void print(const Json& json) {
  view::printText(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

// map nodes

channel::SurfaceNodeMap readNodeMap(const std::string& file, const std::string& stlPath) {
  const ProgressLine progress("mapping " + file);
  channel::SurfaceNodeMap map;
  std::string error;
  if (channel::mapSurfaceNodes(file.c_str(), {{}, stlPath}, map, error) <= 0)
    throw Failure(file, error.substr(std::min(error.size(), file.size() + 2)));
  return map;
}

view::DistanceSummary summarize(const channel::SurfaceNodeMap& map) {
  const auto nodeAt = [&map](std::size_t k) {
    const float* const p = map.xyz.data() + 3 * k;
    return view::FarNode{map.nodes[k], {p[0], p[1], p[2]}, 0};
  };
  return view::summarizeDistances(map.distance, nodeAt);
}

int mapNodes(const Options& options) {
  const std::string stlPath = options.stl ? options.file + channel::kNodeMapDrawing : "";
  const channel::SurfaceNodeMap map = readNodeMap(options.file, stlPath);
  const auto searched = std::count(map.searched.begin(), map.searched.end(), 1);
  const auto missing = std::count(map.toMold.begin(), map.toMold.end(), 0);
  if (options.stl && !map.isDrawn) throw Failure(stlPath, "cannot be written");
  const view::DistanceSummary distances = summarize(map);
  if (options.json) {
    Json json{{"file", options.file},
              {"moldNodes", map.moldNodes},
              {"faces", {{"walls", map.walls}, {"ends", map.ends}}},
              {"nodes", map.count()},
              {"selfMapped", map.count() - searched},
              {"searched", searched},
              {"notFound", missing},
              {"distances", view::distancesAsJson(distances)}};
    if (map.isDrawn) json["stl"] = stlPath;
    print(json);
  } else {
    view::printText("channel surface  " + std::to_string(map.count()) + " nodes of " +
                    std::to_string(map.walls) + " wall and " + std::to_string(map.ends) +
                    " end faces\nmold base        " + std::to_string(map.moldNodes) +
                    " nodes\nmapped           " + std::to_string(map.count() - searched) +
                    " to themselves, " + std::to_string(searched - missing) + " to the nearest node, " +
                    std::to_string(missing) + " to none\n" + view::distancesAsText(distances, "") +
                    (map.isDrawn ? "drawn            " + stlPath + "\n" : ""));
  }
  return 0;
}

// map result

// The result of a point table on the nodes that elements use.
struct MappedResult {
  int points = 0;
  channel::KeptNodes kept;
  std::vector<double> distance;  // of kept nodes
  std::vector<double> values;    // by node from 1 on; no number where no element uses the node
  std::string surfacePath;       // of the second file
};

MappedResult mapPoints(const MeshModel& model, const view::PointTable& points) {
  MappedResult result{points.count(), channel::nodesInUse(model), {}, {}, {}};
  const auto count = static_cast<std::size_t>(result.kept.count());
  std::vector<int> toInput(count + 1);
  std::vector<double> distance(count + 1);
  channel::relateNodes(result.kept, {points.count(), points.x.data(), points.y.data(), points.z.data()},
                       {nullptr, toInput.data(), distance.data()});
  result.distance.assign(distance.begin() + 1, distance.end());
  result.values.assign(static_cast<std::size_t>(model.nodes.count()) + 1,
                       std::numeric_limits<double>::quiet_NaN());
  for (std::size_t k = 0; k < count; ++k)
    result.values[static_cast<std::size_t>(result.kept.numbers[k])] =
        points.value[static_cast<std::size_t>(toInput[k + 1])];
  return result;
}

view::DistanceSummary summarize(const MappedResult& result) {
  const auto nodeAt = [&result](std::size_t k) {
    const double* const p = result.kept.xyz.data() + 3 * k;
    return view::FarNode{result.kept.numbers[k], {p[0], p[1], p[2]}, 0};
  };
  return view::summarizeDistances(result.distance, nodeAt);
}

std::pair<double, double> rangeOf(const std::vector<double>& values, std::size_t first) {
  std::pair range{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
  for (std::size_t i = first; i < values.size(); ++i)
    if (!std::isnan(values[i])) range = {std::min(range.first, values[i]), std::max(range.second, values[i])};
  return range;
}

std::string rangeAsText(const std::pair<double, double>& range) {
  std::string text;
  appendDefault(text, range.first);
  text += " to ";
  appendDefault(text, range.second);
  return text;
}

MappedResult mapAndWrite(const Options& options, const view::PointTable& points) {
  const ProgressLine progress("mapping onto " + options.file);
  COFEData data;
  if (data.ReadDataBin(options.file.c_str(), nullptr, 0, false) != 1)
    throw Failure(options.file, data.errorText());
  MappedResult result = mapPoints(data.model(), points);
  if (result.kept.count() == 0)
    throw Failure(options.file, "has no volume elements, so that there is no node to map onto");
  const view::NodalArray array{"result", result.values};
  result.surfacePath = view::exportVtu(data.model(), options.target, {&array, 1}).surfacePath;
  return result;
}

view::PointTable readPoints(const Options& options) {
  const bool isOfv = view::looksLikeOfv(options.points);
  if (isOfv && options.values.empty())
    throw Failure(options.points,
                  "is an OFV file, which has points alone (name their values: --values FILE)");
  if (!isOfv && !options.values.empty())
    throw Failure(options.points, "is no OFV file (legal with --values: an OFV file)");
  view::PointTable points =
      isOfv ? view::readPointsOfOfv(options.points, options.values) : view::readPointTable(options.points);
  if (points.count() == 0) throw Failure(options.points, "has no points (legal: one or more)");
  return points;
}

int mapResult(const Options& options) {
  requireOtherFile(options.target, {options.file, options.points, options.values});
  const view::PointTable points = readPoints(options);
  const MappedResult result = mapAndWrite(options, points);
  const view::DistanceSummary distances = summarize(result);
  const auto before = rangeOf(points.value, 1), after = rangeOf(result.values, 0);
  if (options.json) {
    print({{"file", options.file},
           {"points", result.points},
           {"nodes", result.kept.count()},
           {"pointValues", {before.first, before.second}},
           {"nodeValues", {after.first, after.second}},
           {"distances", view::distancesAsJson(distances)},
           {"output", {options.target, result.surfacePath}}});
  } else {
    view::printText("points     " + std::to_string(result.points) + ", values " + rangeAsText(before) +
                    "\nnodes      " + std::to_string(result.kept.count()) + " in use, values " +
                    rangeAsText(after) + "\n" + view::distancesAsText(distances, "") + "written    " +
                    options.target + ", " + result.surfacePath + "\n");
  }
  return 0;
}

std::string wrongSuffix(const std::string& path) {
  return path.ends_with(".vtu") ? std::string{} : "OUT must end in .vtu";
}

CLI::App* addVerb(CLI::App& group, Job& job, const std::shared_ptr<Options>& options, const char* name,
                  const char* what, int (*run)(const Options&)) {
  auto* const verb = group.add_subcommand(name, what);
  verb->add_option("MESH", options->file, "component OFE file")->required();
  verb->add_flag("--json", options->json, "print it as JSON");
  verb->callback([&job, options, run] { job = [options, run] { return run(*options); }; });
  return verb;
}

}  // namespace

void addMap(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* const group = app.add_subcommand("map", "Map nodes and results by nearest points");
  group->require_subcommand(1);
  group->footer("Example: orvmesh map nodes mold.ofe");

  auto* const nodes =
      addVerb(*group, job, options, "nodes",
              "Map the nodes of the channels' surface onto those of the mold base", &mapNodes);
  nodes->add_flag("--stl", options->stl, "draw a line for every searched node into MESH.CCNodeToMBNode.stl");
  nodes->footer(
      "A node of a wall face (interface 3) whose end code is not 0 is its own partner, every other one is\n"
      "searched. Distances of the searched nodes, in model units: large ones tell that the channels' "
      "surface\n"
      "and the mold base are of different meshes.\n"
      "Example: orvmesh map nodes mold.ofe --stl");

  auto* const result =
      addVerb(*group, job, options, "result", "Map values at points onto the nodes of a mesh", &mapResult);
  result
      ->add_option("POINTS", options->points,
                   "text table, a point a line: x y z value (model units); or an OFV file")
      ->required();
  result->add_option("--values", options->values,
                     "values at the points of the OFV file: text, one a line, in their order");
  result->add_option("-o,--output", options->target, "VTK XML file to write (.vtu)")
      ->required()
      ->check(wrongSuffix);
  result->footer(
      "Numbers are separated by blanks, tabs or a comma; lines that begin with # or % are passed over. "
      "Every\n"
      "node that an element uses takes the value of the nearest point, of equally near ones the first.\n"
      "Distances, in model units, are large where points and mesh do not lie on each other. The files are\n"
      "those of `orvmesh export` with the point array result.\n"
      "Example: orvmesh map result mold.ofe temperature.txt -o temperature.vtu");
}

}  // namespace orvmesh::cli
