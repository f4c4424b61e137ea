#pragma once

#include <orvmesh/dmpio_manipulator.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/failure.h"
#include "dmpio/dump_json.h"
#include "fuzz/scratch.h"

namespace orvmesh::fuzzing {

inline void readAll(const std::string& path) {
  using Read = int (DMPIO_Manipulator_C::*)(int&);
  using ReadPair = int (DMPIO_Manipulator_C::*)(int&, int&);
  using D = DMPIO_Manipulator_C;
  static constexpr Read kOnes[] = {&D::readElementPlasticMapBlockEntry,
                                   &D::readElementMoldBaseMapBlockEntry,
                                   &D::readElementCoolChannelMapBlockEntry,
                                   &D::readElementCoolFaceToLineMapBlockEntry,
                                   &D::readSensorMapBlockEntry,
                                   &D::readElementSurfaceMapBlockEntry,
                                   &D::readElementSurface103104MapBlockEntry};
  D dump;
  if (dump.beginReading(path.c_str(), nullptr) != 1) return;
  int first = 0, second = 0, items = 0;
  bool isNew = false;
  for (const ReadPair read : {&D::readNodeMapBlockEntry, &D::readElementCoolantEndMapBlockEntry})
    while ((dump.*read)(first, second) >= 0) {
    }
  while (dump.readElementCoolLineToFaceMapBlockEntryItemPair(isNew, items, first, second) >= 0) {
  }
  for (const Read read : kOnes)
    while ((dump.*read)(first) >= 0) {
    }
}

// A copy must be readable, and no larger than its source allows.
inline void convert(const std::string& path, std::size_t size, const std::string& target, int version) {
  DMPIO_Manipulator_C dump;
  dump.convert(path.c_str(), target.c_str(), version);
  if (*dump.getErrorText() != '\0') return;
  if (DMPIO_Manipulator_C().beginReading(target.c_str(), nullptr) != 1) std::abort();
  constexpr std::uintmax_t kBase = std::uintmax_t{8} << 20;
  if (std::filesystem::file_size(target) > 64 * size + kBase) std::abort();
}

// What can be done with a mapping dump. Every input is read entry by entry, some are told, few are copied.
inline void useDump(const std::uint8_t* data, std::size_t size) {
  static InputFile input;
  static const ScratchFile target("copy.dmp");
  const std::string& path = input.put(data, size);
  readAll(path);
  Turn turn(data, size);
  if (turn.oneIn(8)) try {
      dmpio::dumpAsJson(path, [](std::string_view) {});
    } catch (const Failure&) {
    }
  static constexpr int kVersions[] = {1020, 1023, 2001, 2004};
  if (turn.oneIn(32)) convert(path, size, target.path(), kVersions[turn.among(4)]);
}

}  // namespace orvmesh::fuzzing
