#include <orvmesh/mesh_format_transfer.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "base/failure.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "cli/transfer_report.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string variant, source, target;
  bool verbose = false;
  bool stl = false;
};

// The variant's name and its operation. Results below `firstGood` mean that nothing was written, for the
// reason given.
struct Entry {
  const char* name;
  const char* what;
  int (*run)(COrvMeshFormatTransfer& transfer, std::string& source, std::string& target);
  const char* nothingToDo;
};

constexpr Entry kEntries[] = {
    {"channels", "the cooling channels alone",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       t.TransferMesh_OnlyChannel(s.data(), d.data());
       return 1;
     },
     ""},
    {"hot-runner", "the hot runner alone",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       return t.TransferMesh_OnlyHotRunner(s.data(), d.data());
     },
     "its format version (header field 0) is below 14001, the first one with hot-runner data"},
    {"stream-line", "all plastic elements, for the stream-line analysis",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       return t.TransferMesh_StreamLineMesh(s.data(), d.data());
     },
     ""},
    {"moldbase", "mold base and mold inserts",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       return t.TransferMesh_OnlyMoldbase(s.data(), d.data());
     },
     ""},
    {"part-inserts", "the part joined with its part inserts",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       return t.TransferMesh_CombinePI(s.data(), d.data());
     },
     "it has no part-insert material (header field 18 must be at least 1)"},
    {"part-inserts-channels", "part, part inserts and channels",
     [](COrvMeshFormatTransfer& t, std::string& s, std::string& d) {
       return t.TransferMesh_CombinePIAndChannel(s.data(), d.data());
     },
     "it has neither part-insert nor channel material (header field 18 or 17 must be at least 1)"},
};

int transferMesh(const Entry& entry, Options options) {
  COrvMeshFormatTransfer transfer;
  transfer.SetStopOnRefusedSource(true);
  transfer.SetDebugLog(options.verbose ? 1 : 0);
  transfer.SetSTLDiagnostics(options.stl);
  int result = 0;
  {
    const ProgressLine progress("transferring " + std::string(entry.name));
    result = entry.run(transfer, options.source, options.target);
  }
  if (!reportTransfer(transfer, options.source)) return 1;
  if (result < 1) throw Failure(options.source, entry.nothingToDo);
  std::printf("%s: %s written (result %d)\n", entry.name, options.target.c_str(), result);
  printDropped(transfer);
  return 0;
}

}  // namespace

void addTransfer(CLI::App& app, Job& job) {
  auto* command = app.add_subcommand("transfer", "Assemble a solver mesh from a component OFE file");
  command->require_subcommand(1);
  command->footer("Example: orvmesh transfer moldbase mold.ofe solver.ofe");
  for (const Entry& entry : kEntries) {
    const auto options = std::make_shared<Options>();
    auto* variant = command->add_subcommand(entry.name, entry.what);
    variant->add_option("SRC", options->source, "component OFE file")->required();
    variant->add_option("DST", options->target, "solver mesh to write; appears complete or not at all")
        ->required();
    variant->add_flag("--verbose", options->verbose, "print what the passes find");
    variant->add_flag("--stl", options->stl,
                      "moldbase: draw the faces of each class into SRC.Trans_*.stl and print their counts");
    variant->footer(std::string("Example: orvmesh transfer ") + entry.name + " mold.ofe solver.ofe");
    variant->callback(
        [&job, &entry, options] { job = [&entry, options] { return transferMesh(entry, *options); }; });
  }
}

}  // namespace orvmesh::cli
