#pragma once

#include <gtest/gtest.h>
#include <orvmesh/dmpio_manipulator.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "support/files.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

using Dump = DMPIO_Manipulator_C;
using Pairs = std::vector<std::pair<int, int>>;

// The one-int blocks with their operations, in file order.
struct OneIntBlock {
  long id;
  int (Dump::*read)(int&);
  int (Dump::*write)(int);
};
inline constexpr std::array<OneIntBlock, 7> kOneInt{
    {{30000, &Dump::readElementPlasticMapBlockEntry, &Dump::writeElementPlasticMapBlockEntry},
     {40000, &Dump::readElementMoldBaseMapBlockEntry, &Dump::writeElementMoldBaseMapBlockEntry},
     {50000, &Dump::readElementCoolChannelMapBlockEntry, &Dump::writeElementCoolChannelMapBlockEntry},
     {61000, &Dump::readElementCoolFaceToLineMapBlockEntry, &Dump::writeElementCoolFaceToLineMapBlockEntry},
     {63000, &Dump::readSensorMapBlockEntry, &Dump::writeSensorMapBlockEntry},
     {64000, &Dump::readElementSurfaceMapBlockEntry, &Dump::writeElementSurfaceMapBlockEntry},
     {64100, &Dump::readElementSurface103104MapBlockEntry, &Dump::writeElementSurface103104MapBlockEntry}}};

// What a dump holds, by block id.
struct Content {
  Pairs nodes, ends;
  std::vector<std::vector<int>> ints{7};  // as kOneInt
  std::vector<Pairs> lines;
  bool operator==(const Content&) const = default;
};

inline void writeContent(Dump& dump, const Content& content) {
  for (const auto& [a, b] : content.nodes) dump.writeNodeMapBlockEntry(a, b);
  for (std::size_t i = 0; i < 7; ++i) {
    if (i == 3)
      for (const auto& [a, b] : content.ends) dump.writeElementCoolantEndMapBlockEntry(a, b);
    for (const int value : content.ints[i]) (dump.*kOneInt[i].write)(value);
    if (i != 3) continue;
    for (const Pairs& line : content.lines) {
      const int count = static_cast<int>(line.size());
      if (line.empty()) dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 0, 0, 0);
      for (const auto& item : line)
        dump.writeElementCoolLineToFaceMapBlockEntryItemPair(&item == line.data(), count, item.first,
                                                             item.second);
    }
  }
}

inline void setCounts(Dump& dump, const Content& content) {
  const auto size = [](const auto& list) { return static_cast<int>(list.size()); };
  dump.m_HEADER_Aux1 = -11;
  dump.m_HEADER_Aux2 = 22;
  dump.m_HEADER_NNodeMap = size(content.nodes);
  dump.m_HEADER_NElemPlasticMap = size(content.ints[0]);
  dump.m_HEADER_NElemMoldBaseMap = size(content.ints[1]);
  dump.m_HEADER_NElemCoolChannelMap = size(content.ints[2]);
  dump.m_HEADER_NElemCoolantEndMap = size(content.ends);
  dump.m_HEADER_NElemCoolFaceToLineMap = size(content.ints[3]);
  dump.m_HEADER_NElemCoolLineToFaceMap = size(content.lines);
  dump.m_HEADER_NSensorMap = size(content.ints[4]);
}

inline Content readContent(Dump& dump) {
  Content content;
  int a = 0, b = 0;
  while (dump.readNodeMapBlockEntry(a, b) >= 0) content.nodes.emplace_back(a, b);
  for (std::size_t i = 0; i < 7; ++i) {
    if (i == 3)
      while (dump.readElementCoolantEndMapBlockEntry(a, b) >= 0) content.ends.emplace_back(a, b);
    while ((dump.*kOneInt[i].read)(a) >= 0) content.ints[i].push_back(a);
    if (i != 3) continue;
    bool isNew = false;
    int count = 0;
    while (dump.readElementCoolLineToFaceMapBlockEntryItemPair(isNew, count, a, b) >= 0) {
      if (isNew) content.lines.emplace_back();
      if (count != 0) content.lines.back().emplace_back(a, b);
    }
  }
  return content;
}

inline Content readFile(const std::string& path) {
  Dump dump;
  if (dump.beginReading(path.c_str(), nullptr) != 1) ADD_FAILURE() << path << dump.getErrorText();
  return readContent(dump);
}

inline int writeFile(const std::string& path, int version, const Content& content) {
  Dump dump;
  setCounts(dump, content);
  if (dump.beginWriting(path.c_str(), version) != 1) return 0;
  writeContent(dump, content);
  return dump.endWriting();
}

// Something in every block, extreme numbers among it; all blocks but nodes, ends and lines hold two entries.
inline Content everything() {
  Content content;
  content.nodes = {{1, 10}, {-2147483647 - 1, 2147483647}, {3, 30}};
  content.ends = {{7, 8}};
  for (int i = 0; i < 7; ++i) content.ints[static_cast<std::size_t>(i)] = {100 + i, -i};
  content.lines = {{{1, 2}, {3, 4}}, {}, {{5, 6}, {7, 8}, {9, 10}, {11, 12}}};
  return content;
}

}  // namespace orvmesh::test
