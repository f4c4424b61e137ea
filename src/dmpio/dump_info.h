#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "dmpio/dump_walk.h"

namespace orvmesh::dmpio {

// How much a block holds: entries (lines of the line-to-face map) and, for that map, the items of all lines.
struct Amount {
  std::int64_t entries = 0;
  std::int64_t items = 0;
  bool operator==(const Amount&) const = default;
};

struct DumpInfo {
  struct BlockInfo {
    bool isThere = false;
    Amount inFile;
    Amount read;  // what the manipulator reads, block after block
  };
  DumpHeader header;
  std::array<BlockInfo, kBlocks> blocks;
  std::vector<std::string> notes;  // of values that do not go together; many of a kind are counted only

  // What convert carries over of a block at the most.
  Amount copied(Block block) const;
};

// Throws Failure on a file that is no dump or that is damaged.
DumpInfo readDumpInfo(const std::string& path);

// What a copy made by convert lacks of the source, one line each: in whatever version it is made, and what of
// the source does not come back out of this copy.
std::vector<std::string> lossesOfAnyCopy(const DumpInfo& source);
std::vector<std::string> lossesOfCopy(const DumpInfo& source, const DumpInfo& copy);

}  // namespace orvmesh::dmpio
