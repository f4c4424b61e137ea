#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

struct XXH3_state_s;

namespace orvmesh::embedded {

// XXH3, 64 bits.
std::uint64_t checksumOf(const void* bytes, std::size_t size, std::uint64_t seed);

// The same over bytes that come in pieces.
class RunningChecksum {
 public:
  RunningChecksum();
  void restart(std::uint64_t seed);
  void add(const void* bytes, std::size_t size);
  std::uint64_t value() const;

 private:
  struct Free {
    void operator()(XXH3_state_s* state) const;
  };
  std::unique_ptr<XXH3_state_s, Free> state_;
};

}  // namespace orvmesh::embedded
