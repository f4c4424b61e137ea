// OFE files: every input is read whole and validated. Of those that the model accepts, one in 16 is put to
// one of the uses below; a mesh that comes out of it must be one that the model accepts, too.
#include <orvmesh/mesh_format_transfer.h>

#include <cstdlib>

#include "base/failure.h"
#include "fuzz/scratch.h"
#include "platform/cofedata.h"
#include "platform/ofeio.h"
#include "view/ofe_json.h"

namespace {

using namespace orvmesh;
using Transfer = COrvMeshFormatTransfer;

bool accepts(const std::string& path) {
  COFEData model;
  return model.ReadDataBin(path.c_str(), nullptr, 0, false) == 1;
}

template <auto Operation>
void transfer(const std::string& source, const std::string& target) {
  std::string from = source, to = target;
  Transfer transfer;
  (transfer.*Operation)(from.data(), to.data());
}

// JSON has no words for all that a file may hold (numbers that are not finite), and loading asks for more.
void dumpAndLoad(const std::string& source, const std::string& target) {
  std::string first;
  try {
    first = view::dumpJson(source);
    view::loadJson(first, "dump", target);
  } catch (const Failure&) {
    return;
  }
  if (view::dumpJson(target) != first) std::abort();
}

void findEnds(const std::string& source, const std::string&) {
  CoolantInletInfo inlets;
  GateInfo gates;
  (void)OFEIO_Manipulator::extractCoolantInletInfo(source.c_str(), 0, inlets);
  (void)OFEIO_Manipulator::extractGateInfo(source.c_str(), true, nullptr, gates, nullptr);
  (void)OFEIO_Manipulator::getFileSecondBlockExsistency(source.c_str());
}

constexpr void (*kUses[])(const std::string&, const std::string&) = {
    &transfer<&Transfer::TransferMesh_OnlyChannel>,
    &transfer<&Transfer::TransferMesh_OnlyHotRunner>,
    &transfer<&Transfer::TransferMesh_StreamLineMesh>,
    &transfer<&Transfer::TransferMesh_OnlyMoldbase>,
    &transfer<&Transfer::TransferMesh_CombinePI>,
    &transfer<&Transfer::TransferMesh_CombinePIAndChannel>,
    &transfer<&Transfer::TransSolidOFEtoCTG>,
    &dumpAndLoad,
    &findEnds,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzzing::InputFile input;
  static const fuzzing::ScratchFile target("target.ofe");
  const std::string& source = input.put(data, size);
  if (!accepts(source)) return 0;
  fuzzing::Turn turn(data, size);
  if (turn.oneIn(16)) kUses[turn.among(std::size(kUses))](source, target.path());
  return 0;
}
