#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace orvmesh::fuzzing {

// A path in memory-backed storage, one per process.
inline std::string scratchPath(const char* name) {
  return "/dev/shm/orvmesh-fuzz-" + std::to_string(::getpid()) + "-" + name;
}

inline void writeBytes(const std::string& path, const std::uint8_t* bytes, std::size_t size) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return;
  (void)std::fwrite(bytes, 1, size, file);
  (void)std::fclose(file);
}

}  // namespace orvmesh::fuzzing
