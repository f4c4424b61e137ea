#include <orvmesh/mesh_format_transfer.h>

#include <cstdio>
#include <memory>
#include <string>

#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "cli/transfer_report.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target;
};

int exportCtg(Options options) {
  requireOtherFile(options.target, {options.source});
  COrvMeshFormatTransfer transfer;
  transfer.SetStopOnRefusedSource(true);
  {
    const ProgressLine progress("exporting " + options.source);
    transfer.TransSolidOFEtoCTG(options.source.data(), options.target.data());
  }
  if (!reportTransfer(transfer, options.source)) return 1;
  std::printf("%s written\n", options.target.c_str());
  return 0;
}

}  // namespace

void addCtg(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command =
      app.add_subcommand("ctg", "Write the mold elements as a CTG text mesh with faces and boundaries");
  command->add_option("SRC", options->source, "component OFE file")->required();
  command->add_option("DST", options->target, "CTG file to write; appears complete or not at all")
      ->required();
  command->footer("Example: orvmesh ctg mold.ofe mold.ctg && orvmesh info mold.ctg");
  command->callback([&job, options] { job = [options] { return exportCtg(*options); }; });
}

}  // namespace orvmesh::cli
