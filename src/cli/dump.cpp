#include <memory>

#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "view/ofe_json.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target;
};

int dump(const Options& options) {
  requireOtherFile(options.target, {options.source});
  const ProgressLine progress("dumping " + options.source);
  if (options.target.empty())
    view::dumpJson(options.source, view::printText);
  else
    view::dumpJsonFile(options.source, options.target);
  return 0;
}

}  // namespace

void addDump(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("dump", "Print an OFE file as JSON, the form that load reads");
  command->add_option("FILE", options->source, "OFE file")->required();
  command->add_option("-o,--output", options->target, "write to this file; appears complete or not at all");
  command->footer(
      "Every block of the file, one entry a line, and every header field that is not 0.\n"
      "Example: orvmesh dump mold.ofe -o mold.json");
  command->callback([&job, options] { job = [options] { return dump(*options); }; });
}

}  // namespace orvmesh::cli
