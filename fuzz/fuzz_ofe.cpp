// OFE files: whatever the model accepts goes through every variant. Most mutations are sealed again, so that
// they get past the checksums.
#include <orvmesh/mesh_format_transfer.h>

#include "fuzz/reseal.h"
#include "fuzz/scratch.h"
#include "platform/cofedata.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) orvmesh::fuzzing::seal(data, size);
  return size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::string source = orvmesh::fuzzing::scratchPath("source.ofe");
  static std::string target = orvmesh::fuzzing::scratchPath("target.ofe");
  orvmesh::fuzzing::writeBytes(source, data, size);
  {
    COFEData model;
    if (model.ReadDataBin(source.c_str(), nullptr, 0, false) != 1) return 0;
  }
  COrvMeshFormatTransfer transfer;
  transfer.TransferMesh_OnlyChannel(source.data(), target.data());
  transfer.TransferMesh_OnlyHotRunner(source.data(), target.data());
  transfer.TransferMesh_StreamLineMesh(source.data(), target.data());
  transfer.TransferMesh_OnlyMoldbase(source.data(), target.data());
  transfer.TransferMesh_CombinePI(source.data(), target.data());
  transfer.TransferMesh_CombinePIAndChannel(source.data(), target.data());
  return 0;
}
