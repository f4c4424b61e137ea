// The JSON form: whatever loads must dump, and its dump must load again to the same dump.
#include <cstdlib>

#include "base/failure.h"
#include "fuzz/scratch.h"
#include "view/json_parse.h"
#include "view/ofe_json.h"

namespace {

using namespace orvmesh;

void readOnly(std::string_view text) {
  const view::JsonMesh mesh = view::parseJson(text, "input");
  view::checkNumbers(mesh, "input");
  view::checkRelations(mesh, "input");
}

void loadAndDump(std::string_view text, const std::string& path) {
  view::loadJson(text, "input", path);
  const std::string first = view::dumpJson(path);
  try {
    view::loadJson(first, "dump", path);
  } catch (const Failure&) {
    std::abort();
  }
  if (view::dumpJson(path) != first) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzzing::ScratchFile target("mesh.ofe");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    if (fuzzing::Turn(data, size).oneIn(8))
      loadAndDump(text, target.path());
    else
      readOnly(text);
  } catch (const Failure&) {
  }
  return 0;
}
