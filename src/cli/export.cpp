#include <cstdio>
#include <memory>

#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "view/export_vtu.h"
#include "view/ofv_read.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target;
};

view::VtuExport write(const Options& options) {
  const ProgressLine progress("exporting " + options.source);
  return view::exportVtu(options.source, options.target);
}

int exportPolyhedra(const Options& options) {
  const ProgressLine progress("exporting " + options.source);
  const auto cells = view::exportOfv(options.source, options.target);
  std::printf("%s: %lld polyhedra\n", options.target.c_str(), static_cast<long long>(cells));
  return 0;
}

int exportFile(const Options& options) {
  requireOtherFile(options.target, {options.source});
  if (view::looksLikeOfv(options.source)) return exportPolyhedra(options);
  const auto done = write(options);
  std::printf("%s: %lld elements\n%s: %lld surface elements\n", options.target.c_str(),
              static_cast<long long>(done.cells), done.surfacePath.c_str(),
              static_cast<long long>(done.surfaces));
  return 0;
}

std::string wrongSuffix(const std::string& path) {
  return path.ends_with(".vtu") ? std::string{} : "OUT must end in .vtu";
}

}  // namespace

void addExport(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command =
      app.add_subcommand("export", "Write an OFE or OFV file as VTK files, to look at in ParaView");
  command->add_option("FILE", options->source, "OFE or OFV file")->required();
  command->add_option("OUT", options->target, "VTK XML file to write (.vtu)")->required()->check(wrongSuffix);
  command->footer(
      "Two unstructured grids, coordinates in model units (the file's times its length factor):\n"
      "OUT.vtu           the volume elements; cell arrays component (1 plastic, 2 mold, 3 channel),\n"
      "                  material (kind for channels), group, element (number in its block), bad (0 or 1)\n"
      "OUT_surfaces.vtu  the surface elements and the nodes they use; cell arrays interface, ownerCode,\n"
      "                  contactCode, boundaryType, elementNo, tag, group (the tag's), surface (number);\n"
      "                  point array node (number)\n"
      "Neither file is touched before both are complete.\n"
      "An OFV file becomes one grid of polyhedra; cell arrays cavity (number), kind (1 channel), cell.\n"
      "Example: orvmesh export mold.ofe mold.vtu");
  command->callback([&job, options] { job = [options] { return exportFile(*options); }; });
}

}  // namespace orvmesh::cli
