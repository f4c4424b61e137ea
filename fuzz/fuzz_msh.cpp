// MSH files: whatever is imported must be a file that the model accepts.
#include <cstdlib>

#include "base/failure.h"
#include "fuzz/scratch.h"
#include "import/import.h"
#include "platform/cofedata.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static orvmesh::fuzzing::InputFile input;
  static const orvmesh::fuzzing::ScratchFile target("mold.ofe");
  orvmesh::importing::ImportOptions options;
  options.mesh = input.put(data, size);
  options.target = target.path();
  try {
    orvmesh::importing::importMesh(options);
  } catch (const orvmesh::Failure&) {
    return 0;
  }
  COFEData model;
  if (model.ReadDataBin(options.target.c_str(), nullptr, 0, false) != 1) std::abort();
  return 0;
}
