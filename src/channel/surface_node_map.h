#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "channel/console.h"

namespace orvmesh::channel {

// A mold-base node for every node of the channels' surface of one file, in the order of their numbers. All
// node numbers are the file's.
struct SurfaceNodeMap {
  std::int32_t moldNodes = 0;          // that the mold base has
  std::int32_t walls = 0, ends = 0;    // faces of interface 3 and 4
  std::vector<std::int32_t> nodes;     // of the channels' surface, ascending
  std::vector<float> xyz;              // of these, 3 each, times the scale factor
  std::vector<std::int32_t> toMold;    // 0 where none was found
  std::vector<std::uint8_t> searched;  // 0 for a node that is its own partner
  std::vector<double> distance;        // to the partner; no number where none was searched or found
  bool isDrawn = false;                // the drawing was asked for, had lines and was written

  std::int32_t count() const { return static_cast<std::int32_t>(nodes.size()); }
};

struct NodeMapOptions {
  Console console;
  std::string stlPath;  // a line for every searched node goes into this file, unless it is empty
};

// Reads the file into an empty map. 1; else the platform's result, 0 or below, and `error` says why.
int mapSurfaceNodes(const char* path, const NodeMapOptions& options, SurfaceNodeMap& map, std::string& error);

// What is added to the path of a file for the drawing.
inline constexpr const char* kNodeMapDrawing = ".CCNodeToMBNode.stl";

}  // namespace orvmesh::channel
