#pragma once

#include <orvmesh/dmpio_manipulator.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/failure.h"
#include "dmpio/dump_json.h"
#include "fuzz/scratch.h"

namespace orvmesh::fuzzing {

// Everything that can be done with a mapping dump. A copy must be readable, and no larger than its source
// allows.
inline void useDump(const std::string& path, const std::string& target) {
  DMPIO_Manipulator_C dump;
  for (const int version : {1020, 1023, 2001, 2004}) {
    std::filesystem::remove(target);
    dump.convert(path.c_str(), target.c_str(), version);
    if (*dump.getErrorText() != '\0') continue;
    if (DMPIO_Manipulator_C().beginReading(target.c_str(), nullptr) != 1) std::abort();
    constexpr std::uintmax_t kBase = std::uintmax_t{8} << 20;
    if (std::filesystem::file_size(target) > 64 * std::filesystem::file_size(path) + kBase) std::abort();
  }
  try {
    dmpio::dumpAsJson(path, [](std::string_view) {});
  } catch (const Failure&) {
  }
  using Read = int (DMPIO_Manipulator_C::*)(int&);
  int value = 0;
  if (dump.beginReading(path.c_str(), nullptr) != 1) return;
  for (const Read read :
       {&DMPIO_Manipulator_C::readSensorMapBlockEntry, &DMPIO_Manipulator_C::readElementSurfaceMapBlockEntry,
        &DMPIO_Manipulator_C::readElementSurface103104MapBlockEntry})
    while ((dump.*read)(value) >= 0) {
    }
}

}  // namespace orvmesh::fuzzing
