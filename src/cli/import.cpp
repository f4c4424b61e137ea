#include "import/import.h"

#include <cstdio>
#include <memory>

#include "cli/commands.h"
#include "cli/progress.h"

namespace orvmesh::cli {
namespace {

struct Arguments {
  importing::ImportOptions options;
  double merge = 0;
  bool quiet = false;
  bool json = false;
};

int runImport(const Arguments& arguments) {
  const auto report = [&] {
    const ProgressLine progress("importing " + arguments.options.mesh);
    return importing::importMesh(arguments.options);
  }();
  if (arguments.quiet) return 0;
  const auto text = arguments.json ? importing::reportJson(report) : importing::reportText(report);
  std::fwrite(text.data(), 1, text.size(), stdout);
  return 0;
}

}  // namespace

void addImport(CLI::App& app, Job& job) {
  auto* command =
      app.add_subcommand("import", "Turn a meshed mold (Gmsh MSH 2.2 or 4.1) into a component OFE file");
  const auto arguments = std::make_shared<Arguments>();
  auto& options = arguments->options;
  command->add_option("MESH", options.mesh, "Volume mesh with physical groups")->required();
  command->add_option("TARGET", options.target, "OFE file to write")->required();
  command->add_option("--roles", options.roles, "JSON file: roles of groups, and what a mesh cannot carry");
  command
      ->add_option("--scale", options.scale,
                   "Length scale factor of the OFE file; coordinates stay as they are")
      ->check(CLI::PositiveNumber);
  const auto* merge =
      command->add_option("--merge", arguments->merge, "Join nodes that are at most this far apart")
          ->check(CLI::NonNegativeNumber);
  command->add_flag("--drop-unused", options.dropUnused, "Drop nodes of no written element");
  const auto* quiet = command->add_flag("--quiet", arguments->quiet, "Print nothing but errors");
  command->add_flag("--json", arguments->json, "Print the report as JSON")
      ->excludes(const_cast<CLI::Option*>(quiet));
  command->footer(
      "Volumes become components by the names of their physical groups: part, hotrunner:GROUP, "
      "insert:MATERIAL,\n"
      "moldbase, channel:GROUP, heater:GROUP; see docs/import.md.\n"
      "Example: orvmesh import mold.msh mold.ofe --roles roles.json --merge 1e-4");
  command->callback([arguments, merge, &job] {
    if (merge->count() > 0) arguments->options.merge = arguments->merge;
    job = [arguments] { return runImport(*arguments); };
  });
}

}  // namespace orvmesh::cli
