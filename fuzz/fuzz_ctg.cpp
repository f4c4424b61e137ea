// CTG files: whatever is read and checked can be told in both forms.
#include "base/failure.h"
#include "fuzz/scratch.h"
#include "view/ctg_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path = orvmesh::fuzzing::scratchPath("mesh.ctg");
  orvmesh::fuzzing::writeBytes(path, data, size);
  try {
    orvmesh::view::ctgInfoAsText(path);
  } catch (const orvmesh::Failure&) {
    return 0;
  }
  orvmesh::view::ctgInfoAsJson(path);
  return 0;
}
