#pragma once

#include <array>
#include <string>

#include "dmpio/layout.h"

namespace orvmesh::dmpio {

// What stands in a file, in file order, be it reachable through the manipulator or not.
class DumpVisitor {
 public:
  virtual ~DumpVisitor() = default;
  virtual void beginBlock(Block block) = 0;
  virtual void endBlock() = 0;
  virtual void one(int value) = 0;
  virtual void pair(int first, int second) = 0;
  // A line of the line-to-face map and its items, each of them a call of pair.
  virtual void beginGroup() = 0;
  virtual void endGroup() = 0;
  // Values that do not go together, as a caller leaves them who stops in the middle: what and where.
  virtual void note(const std::string& text) = 0;
};

struct DumpHeader {
  int version = 0;
  Encoding encoding = Encoding::Text;
  std::array<int, kHeaderValues> values{};  // 0 beyond those that the version has
};

// Both throw Failure on a file that is no dump or that is damaged.
DumpHeader readDumpHeader(const std::string& path);
void walkDump(const std::string& path, Encoding encoding, DumpVisitor& visitor);

}  // namespace orvmesh::dmpio
