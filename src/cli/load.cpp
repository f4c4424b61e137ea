#include <memory>
#include <optional>

#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "view/ofe_json.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target;
  std::optional<int> version;
};

int load(const Options& options) {
  requireOtherFile(options.target, {options.source});
  const ProgressLine progress("loading " + options.source);
  view::loadJsonFile(options.source, options.target, {options.version});
  return 0;
}

}  // namespace

void addLoad(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("load", "Make an OFE file from its JSON form, as dump prints it");
  command->add_option("FILE", options->source, "JSON file")->required();
  command->add_option("OUT", options->target, "OFE file to write; appears complete or not at all")
      ->required();
  command->add_option("--version", options->version,
                      "write the file as this version, whatever header field 0 says");
  command->footer(
      "Every key but \"nodes\" may be left out. Without --version the file is written as the nearest\n"
      "writable version at or below header field 0 (the newest when the field is 0 or left out).\n"
      "Example: orvmesh load mold.json mold.ofe");
  command->callback([&job, options] { job = [options] { return load(*options); }; });
}

}  // namespace orvmesh::cli
