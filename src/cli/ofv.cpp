#include <orvmesh/mesh_format_transfer.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/other_file.h"
#include "base/text_number.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "view/ctg_cavities.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string source, target;
  std::vector<std::int32_t> channels;
  double scale = 1;
  bool onlyChannels = false;
};

view::CtgCavities read(const Options& options) {
  const view::CtgMesh mesh = view::readCtg(options.source);
  view::checkCtg(mesh);
  return view::cavitiesOf(mesh, options.channels, options.scale);
}

int sizeOf(const auto& oneBased) { return static_cast<int>(oneBased.size()) - 1; }

// Hands the mesh to the cavity operations and writes it. The result of the first that is not done.
int transferAll(COrvMeshFormatTransfer& transfer, const view::CtgCavities& mesh, const Options& options) {
  const auto faceNodes = static_cast<long long>(mesh.faceNodes.size()) - 1;
  int result = transfer.SetCTG2OFVFilePath(options.target.c_str());
  const auto next = [&result](auto operation) {
    if (result == CavityResult_Done) result = operation();
  };
  next([&] {
    return transfer.SetCTGMeshInfo(sizeOf(mesh.x), sizeOf(mesh.owner), faceNodes, sizeOf(mesh.cellCavity),
                                   sizeOf(mesh.cavityNumber), sizeOf(mesh.inletID));
  });
  next([&] { return transfer.SetCTGCavityInfo(mesh.cavityNumber.data(), mesh.cavityKind.data()); });
  next([&] { return transfer.SetCTGCavityCellInfo(mesh.cellCavity.data()); });
  next([&] { return transfer.SetCTGCavityNodeInfo(mesh.x.data(), mesh.y.data(), mesh.z.data()); });
  next([&] {
    return transfer.SetCTGCavityFaceInfo(mesh.faceNodeCount.data(), mesh.faceNodes.data(), mesh.owner.data(),
                                         mesh.neighbour.data());
  });
  next([&] { return transfer.SetInletID2ChannelGrpID(mesh.inletID.data(), mesh.inletGroup.data()); });
  next([&] { return options.onlyChannels ? transfer.GetTransOFV_OnlyChannel() : transfer.GetTransOFV(); });
  return result;
}

int makeOfv(const Options& options) {
  requireOtherFile(options.target, {options.source});
  COrvMeshFormatTransfer transfer;
  int result = 0;
  {
    const ProgressLine progress("transferring " + options.source);
    result = transferAll(transfer, read(options), options);
  }
  if (result != CavityResult_Done) {
    const std::string told = transfer.GetErrorMessage_Link();
    // Before the colon is the target's name, which does not need another, or that of the operation.
    if (result == CavityResult_NotWritten)
      throw Failure(options.target, told.substr(options.target.size() + 2));
    if (result == CavityResult_OutOfMemory) throw std::bad_alloc();
    throw Failure(options.source, told.substr(told.find(": ") + 2));
  }
  transfer.FreeMemory();
  std::printf("%s written\n", options.target.c_str());
  return 0;
}

std::string wrongScale(const std::string& text) {
  const auto factor = parseNumber<double>(text);
  return factor && *factor > 0 && *factor <= std::numeric_limits<double>::max()
             ? std::string{}
             : "the factor must be a finite number above 0";
}

}  // namespace

void addOfv(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("ofv", "Turn a CTG text mesh into an OFV finite-volume mesh");
  command->add_option("SRC", options->source, "CTG file")->required();
  command->add_option("DST", options->target, "OFV file to write; appears complete or not at all")
      ->required();
  auto* const channel =
      command
          ->add_option("--channel", options->channels,
                       "property whose elements are a cooling channel; may be given several times")
          ->take_all()
          ->expected(1);
  command->add_flag("--only-channels", options->onlyChannels, "write the cells of these channels alone")
      ->needs(channel);
  command->add_option("--scale", options->scale, "factor of all lengths")
      ->capture_default_str()
      ->check(wrongScale);
  command->footer(
      "Elements of one property make a cavity, whose number is the property. Coolant boundaries 1 to 1000\n"
      "are channel groups; each makes an inlet of the inlet map. The lengths of a CTG file are model units\n"
      "times the length factor f of the OFE file: --scale 1/f gives model units.\n"
      "Example: orvmesh ofv mold.ctg mold.ofv && orvmesh export mold.ofv mold.vtu");
  command->callback([&job, options] { job = [options] { return makeOfv(*options); }; });
}

}  // namespace orvmesh::cli
