// Mapping dumps in the text form.
#include "fuzz/use_dump.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string source = orvmesh::fuzzing::scratchPath("source.dmp");
  static const std::string target = orvmesh::fuzzing::scratchPath("target.dmp");
  orvmesh::fuzzing::writeBytes(source, data, size);
  orvmesh::fuzzing::useDump(source, target);
  return 0;
}
