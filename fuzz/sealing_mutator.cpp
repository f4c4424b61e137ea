// For targets of block files: 7 of 8 mutations are sealed again, so that they get past the checksums.
#include "fuzz/reseal.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) orvmesh::fuzzing::seal(data, size);
  return size;
}
