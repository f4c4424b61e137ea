// MSH files: whatever is imported must be a file that the model accepts.
#include <cstdlib>

#include "base/failure.h"
#include "fuzz/scratch.h"
#include "import/import.h"
#include "platform/cofedata.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string mesh = orvmesh::fuzzing::scratchPath("mold.msh");
  static const std::string target = orvmesh::fuzzing::scratchPath("mold.ofe");
  orvmesh::fuzzing::writeBytes(mesh, data, size);
  orvmesh::importing::ImportOptions options;
  options.mesh = mesh;
  options.target = target;
  try {
    orvmesh::importing::importMesh(options);
  } catch (const orvmesh::Failure&) {
    return 0;
  }
  COFEData model;
  if (model.ReadDataBin(target.c_str(), nullptr, 0, false) != 1) std::abort();
  return 0;
}
