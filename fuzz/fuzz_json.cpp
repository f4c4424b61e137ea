// The JSON form: whatever loads must dump, and its dump must load again to the same dump.
#include <cstdlib>

#include "base/failure.h"
#include "fuzz/scratch.h"
#include "view/ofe_json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path = orvmesh::fuzzing::scratchPath("mesh.ofe");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    orvmesh::view::loadJson(text, "input", path);
  } catch (const orvmesh::Failure&) {
    return 0;
  }
  const std::string first = orvmesh::view::dumpJson(path);
  orvmesh::view::loadJson(first, "dump", path);
  if (orvmesh::view::dumpJson(path) != first) std::abort();
  return 0;
}
