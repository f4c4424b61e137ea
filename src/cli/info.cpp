#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/progress.h"
#include "view/ctg_mesh.h"
#include "view/file_info.h"
#include "view/ofv_read.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string file;
  bool json = false;
};

std::string describe(const Options& options) {
  const ProgressLine progress("reading " + options.file);
  if (view::looksLikeCtg(options.file))
    return options.json ? view::ctgInfoAsJson(options.file) : view::ctgInfoAsText(options.file);
  if (view::looksLikeOfv(options.file))
    return options.json ? view::ofvInfoAsJson(options.file) : view::ofvInfoAsText(options.file);
  const view::FileInfo content = view::readFileInfo(options.file);
  return options.json ? view::fileInfoAsJson(content) : view::fileInfoAsText(content);
}

int info(const Options& options) {
  view::printText(describe(options));
  return 0;
}

}  // namespace

void addInfo(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("info", "Tell what an OFE, OFV or CTG file holds");
  command->add_option("FILE", options->file, "OFE, OFV or CTG file")->required();
  command->add_flag("--json", options->json, "print it as JSON, without any limit on rows");
  command->footer(
      "Counts per component, material, group and interface, header strings, bounding box, and what the\n"
      "header counts otherwise than the blocks (many solver meshes mean to).\n"
      "A CTG or OFV file is checked first: every face must have its elements and every element must be "
      "closed.\n"
      "Example: orvmesh info mold.ofe");
  command->callback([&job, options] { job = [options] { return info(*options); }; });
}

}  // namespace orvmesh::cli
