// CTG files: whatever is read and checked can be told in both forms.
#include "base/failure.h"
#include "fuzz/scratch.h"
#include "view/ctg_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static orvmesh::fuzzing::InputFile input;
  const std::string& path = input.put(data, size);
  try {
    orvmesh::view::ctgInfoAsText(path);
  } catch (const orvmesh::Failure&) {
    return 0;
  }
  orvmesh::view::ctgInfoAsJson(path);
  return 0;
}
