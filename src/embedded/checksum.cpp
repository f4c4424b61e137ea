#include "embedded/checksum.h"

#include <xxhash.h>

#include <new>

namespace orvmesh::embedded {

std::uint64_t checksumOf(const void* bytes, std::size_t size, std::uint64_t seed) {
  return XXH3_64bits_withSeed(bytes, size, seed);
}

RunningChecksum::RunningChecksum() : state_(XXH3_createState()) {
  if (!state_) throw std::bad_alloc();
  restart(0);
}
void RunningChecksum::restart(std::uint64_t seed) { XXH3_64bits_reset_withSeed(state_.get(), seed); }
void RunningChecksum::add(const void* bytes, std::size_t size) {
  XXH3_64bits_update(state_.get(), bytes, size);
}
std::uint64_t RunningChecksum::value() const { return XXH3_64bits_digest(state_.get()); }
void RunningChecksum::Free::operator()(XXH3_state_s* state) const { XXH3_freeState(state); }

}  // namespace orvmesh::embedded
