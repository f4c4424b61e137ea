#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/descriptor.h"
#include "base/failure.h"
#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/heat_report.h"
#include "cli/progress.h"
#include "heatsource/comsol_reader.h"
#include "platform/cofedata.h"
#include "view/export_vtu.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

struct Options {
  HeatJob job;
  bool json = false;
};

std::string whyNotOpened(const std::string& path) {
  const Descriptor file(openToRead(path.c_str(), O_NONBLOCK));
  return file.isOpen() ? "it is no file" : std::strerror(errno);
}

void readTable(HeatJob& job, COrvTool_PointFileReader& table) {
  const ProgressLine progress("reading " + job.table);
  if (!heatsource::readComsolFile(job.table.c_str(), table, job.report, [](double, double) {}))
    throw Failure(job.table, "cannot be opened: " + whyNotOpened(job.table));
  if (job.report.rows > 0) return;
  if (!job.report.error.empty()) throw Failure(job.table, job.report.error);
  throw Failure(job.table,
                job.report.blocks == 0
                    ? "no table found (a line \"% Nodes: COUNT\", then \"% x y z VALUE\", then the rows)"
                    : "no row follows the line of the columns");
}

void mapTable(HeatJob& job, const COrvTool_PointFileReader& table, const MeshModel& model) {
  const ProgressLine progress("mapping onto " + job.mesh);
  job.map = mapHeat(table, job.report, model.nodes);
  if (model.nodes.count() == 0) throw Failure(job.mesh, "has no nodes to map onto");
  if (job.map.mapped == 0) throw Failure(job.table, "no point has finite coordinates");
  job.distances = view::summarizeDistances(std::span(job.map.distance).subspan(1), [&model](std::size_t i) {
    const auto node = static_cast<std::int32_t>(i) + 1;
    const COFE_Node at = model.nodes[node];
    return view::FarNode{node, {at.x, at.y, at.z}, 0};
  });
  const view::NodalArray nodal[] = {
      {"heatSource", job.map.source}, {"loss", job.map.loss}, {"distance", job.map.distance}};
  job.surfaceTarget = view::exportVtu(model, job.target, nodal).surfacePath;
}

int mapHeatSource(Options options) {
  HeatJob& job = options.job;
  requireOtherFile(job.target, {job.table, job.mesh});
  COrvTool_PointFileReader table;
  readTable(job, table);
  {
    COFEData data;
    if (data.ReadDataBin(job.mesh.c_str(), nullptr, 0, false) != 1) throw Failure(job.mesh, data.errorText());
    job.meshUnit = data.model().header.unit;
    job.lengthFactor = data.model().lengthFactor;
    mapTable(job, table, data.model());
  }
  for (const std::string& warning : heatWarnings(job))
    std::fprintf(stderr, "orvmesh: %s: warning: %s\n", job.table.c_str(), warning.c_str());
  view::printText(options.json ? heatAsJson(job) : heatAsText(job));
  return 0;
}

std::string wrongSuffix(const std::string& path) {
  return path.ends_with(".vtu") ? std::string{} : "OUT must end in .vtu";
}

}  // namespace

void addHeat(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  HeatJob& heat = options->job;
  auto* command = app.add_subcommand("heat", "Map a COMSOL table of surface losses onto the nodes of a mesh");
  command->add_option("COMSOL", heat.table, "text export of COMSOL: x y z in m, loss in W/m2")->required();
  command->add_option("MESH", heat.mesh, "OFE file, lengths in cm")->required();
  command
      ->add_option("-o,--output", heat.target, "VTK XML file to write (.vtu); appears complete or not at all")
      ->required()
      ->check(wrongSuffix);
  auto* start = command->add_option("--start", heat.start, "when the heating starts");
  auto* end = command->add_option("--end", heat.end, "when it ends");
  start->needs(end);
  end->needs(start);
  command->add_flag("--json", options->json, "print it as JSON");
  command->footer(
      "Every node takes the value of its nearest point. OUT.vtu and OUT_surfaces.vtu are those of\n"
      "`orvmesh export` with three point arrays more: heatSource (the loss times -10^7, as the analysis "
      "gets\n"
      "it), loss (W/cm2) and distance (to the point, cm).\n"
      "Look at the distances: they are small when table and mesh are of one geometry.\n"
      "Example: orvmesh heat losses.txt mold.ofe -o heat.vtu --start 0 --end 12.5");
  command->callback([&job, options, start] {
    options->job.hasTimes = start->count() > 0;
    job = [options] { return mapHeatSource(*options); };
  });
}

}  // namespace orvmesh::cli
