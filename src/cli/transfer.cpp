#include <orvmesh/dmpio_manipulator.h>
#include <orvmesh/mesh_format_transfer.h>

#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "base/failure.h"
#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "cli/transfer_report.h"
#include "dmpio/number_maps.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target, dump;
  int dumpVersion = 2004;
  bool verbose = false;
  bool stl = false;
};

// The variant's name and its operation; why nothing was written when the result is below 1.
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

std::span<const int> numbersOf(const COrvMeshFormatTransfer& transfer, TargetNumbering of) {
  int count = 0;
  const int* const numbers = transfer.GetTargetNumbers_Link(of, count);
  return {numbers + 1, static_cast<std::size_t>(count)};
}

void writeDump(const COrvMeshFormatTransfer& transfer, const Options& options) {
  int ends = 0;
  const int* const channelEnds = transfer.GetChannelEnds_Link(ends);
  const dmpio::NumberMaps maps{numbersOf(transfer, TargetNumbering_Node),
                               numbersOf(transfer, TargetNumbering_ElementPlastic),
                               numbersOf(transfer, TargetNumbering_ElementMoldBase),
                               numbersOf(transfer, TargetNumbering_ElementCoolChannel),
                               numbersOf(transfer, TargetNumbering_ElementSurface),
                               numbersOf(transfer, TargetNumbering_Sensor),
                               {channelEnds + 1, static_cast<std::size_t>(ends)}};
  dmpio::writeNumberMaps(maps, options.dump, options.dumpVersion);
  std::printf("  numbers of source and target: %s\n", options.dump.c_str());
  if (!dmpio::keepsSensorMap(options.dumpVersion) && !maps.sensors.empty())
    std::fprintf(
        stderr,
        "orvmesh: %s: warning: version %d has no count of sensors, their numbers are left out (1023 and "
        "the block versions have it)\n",
        options.dump.c_str(), options.dumpVersion);
}

// A dump must not take the place of a mesh; what cannot be written is better known before the work.
void checkDump(const Options& options) {
  requireOtherFile(options.dump, {options.source, options.target});
  int known = 0;
  int supported = 0;
  if (DMPIO_Manipulator_C::isAsciiDMP(options.dumpVersion, known, supported) == 0)
    DMPIO_Manipulator_C::isBinaryDMP(options.dumpVersion, known, supported);
  if (supported == 0)
    throw Failure(options.dump, "cannot be written in version " + std::to_string(options.dumpVersion) +
                                    " (legal: 1020, 1022, 1023, 2001, 2003, 2004, 2005)");
}

int transferMesh(const Entry& entry, Options options) {
  requireOtherFile(options.target, {options.source});
  if (!options.dump.empty()) checkDump(options);
  COrvMeshFormatTransfer transfer;
  transfer.SetStopOnRefusedSource(true);
  transfer.SetDebugLog(options.verbose ? 1 : 0);
  transfer.SetSTLDiagnostics(options.stl);
  transfer.SetKeepTargetNumbers(!options.dump.empty());
  int result = 0;
  {
    const ProgressLine progress("transferring " + std::string(entry.name));
    result = entry.run(transfer, options.source, options.target);
  }
  if (!reportTransfer(transfer, options.source)) return 1;
  if (result < 1) throw Failure(options.source, entry.nothingToDo);
  std::printf("%s: %s written (result %d)\n", entry.name, options.target.c_str(), result);
  printDropped(transfer);
  if (!options.dump.empty()) writeDump(transfer, options);
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
    auto* const dump = variant->add_option("--dmp", options->dump,
                                           "record the numbers of source and target in this mapping dump");
    variant
        ->add_option("--dmp-version", options->dumpVersion,
                     "1020, 1022, 1023 (text), 2001, 2003, 2004 or 2005 (block); default 2004")
        ->needs(dump);
    variant->add_flag("--verbose", options->verbose, "print what the passes find");
    variant->add_flag("--stl", options->stl,
                      "moldbase: draw the faces of each class into SRC.Trans_*.stl and print their counts");
    variant->footer(std::string("Example: orvmesh transfer ") + entry.name + " mold.ofe solver.ofe");
    variant->callback(
        [&job, &entry, options] { job = [&entry, options] { return transferMesh(entry, *options); }; });
  }
}

}  // namespace orvmesh::cli
