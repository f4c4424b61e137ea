#include <memory>

#include "cli/commands.h"
#include "cli/progress.h"
#include "view/file_info.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string file;
  bool json = false;
};

view::FileInfo read(const std::string& file) {
  const ProgressLine progress("reading " + file);
  return view::readFileInfo(file);
}

int info(const Options& options) {
  const auto content = read(options.file);
  view::printText(options.json ? view::fileInfoAsJson(content) : view::fileInfoAsText(content));
  return 0;
}

}  // namespace

void addInfo(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("info", "Tell what an OFE file holds");
  command->add_option("FILE", options->file, "OFE file")->required();
  command->add_flag("--json", options->json, "print it as JSON, without any limit on rows");
  command->footer(
      "Counts per component, material, group and interface, header strings, bounding box, and what the\n"
      "header counts otherwise than the blocks (many solver meshes mean to).\n"
      "Example: orvmesh info mold.ofe");
  command->callback([&job, options] { job = [options] { return info(*options); }; });
}

}  // namespace orvmesh::cli
