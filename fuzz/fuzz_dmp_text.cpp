// Mapping dumps in the text form.
#include "fuzz/use_dump.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvmesh::fuzzing::useDump(data, size);
  return 0;
}
