// Mapping dumps in the block form. Most mutations are sealed again, so that they get past the checksums.
#include "fuzz/reseal.h"
#include "fuzz/use_dump.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) orvmesh::fuzzing::seal(data, size);
  return size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string source = orvmesh::fuzzing::scratchPath("source.dmp");
  static const std::string target = orvmesh::fuzzing::scratchPath("target.dmp");
  orvmesh::fuzzing::writeBytes(source, data, size);
  orvmesh::fuzzing::useDump(source, target);
  return 0;
}
