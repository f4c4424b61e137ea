#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/one_based.h"

// What the pre-passes learn from the model, and what the writers leave out of the target. A pass that a
// variant does not run leaves its result empty.
namespace orvmesh::transfer {

struct NodeTyping {
  OneBasedArray<std::int32_t> type;          // NodeTypeCode of each node
  std::int32_t insertElements = 0;           // mold elements of material 5001..9999
  OneBasedArray<std::int32_t> contactNodes;  // nodes of type 5, ascending
};

struct ContactCounts {
  std::int32_t interior = 0;  // records of kind 0
  std::int32_t other = 0;     // records of any kind but 0 and 3
};

struct HeaterGroups {
  std::int32_t coolantElements = 0;  // stays 0: nothing counts them
  std::int32_t coolantGroups = 0;
  std::int32_t heaterElements = 0;
  std::int32_t heaterGroups = 0;
  OneBasedArray<std::uint8_t> elementFlags;
  OneBasedArray<std::uint8_t> nodeFlags;
  bool isHeaterElement(std::int32_t e) const {
    return 1 <= e && e <= elementFlags.count() && elementFlags[e] != 0;
  }
};

struct HeaterFaces {
  std::int32_t wall = 0;   // interface 3, sub-ID 2
  std::int32_t other = 0;  // interface 4 on a heater element
};

struct ChannelNodeLists {
  std::array<std::vector<std::int32_t>, 4> nodes;  // of types 9, 10, 11, 12, ascending
};

struct SurfaceNumbering {
  OneBasedArray<std::int32_t> newNumber;  // 0: not written
  std::int32_t numberedWithList = 0;      // numbered surfaces that carry a boundary-condition list
};

struct BadElement {
  std::int32_t elementNo;
  std::int32_t code;
};
struct BadElements {
  std::vector<BadElement> plastic, mold, channel;
};

struct HotRunnerNodes {
  std::int32_t entries = 0;
  std::int32_t distinct = 0;
};

// New number of each gate, by its group; -1 where there is no gate or the gate is not taken.
struct GateNumbers {
  std::vector<std::int32_t> common, hotCold;
  std::int32_t gateFaces = 0;
  static std::int32_t find(const std::vector<std::int32_t>& numbers, std::int32_t group) {
    const auto i = static_cast<std::size_t>(group);
    return i < numbers.size() ? numbers[i] : -1;
  }
};

// Entries of the source that the target does not hold: which (a literal), and how many.
struct Dropped {
  const char* what;
  std::int32_t count;
};

struct PrepassResults {
  std::int32_t channelGroupCount = 0;
  std::optional<NodeTyping> nodeTyping;
  ContactCounts contacts;
  std::optional<HeaterGroups> heaters;
  HeaterFaces heaterFaces;
  std::optional<SurfaceNumbering> surfaceNumbering;
  BadElements bad;
  std::vector<std::int32_t> inlets;  // entries from 1 on; empty when there is none
  GateNumbers gates;
  HotRunnerNodes hotRunnerNodes;
  OneBasedArray<std::int32_t> hotRunnerElements;  // new number of each plastic element, 0: not written
  std::vector<Dropped> dropped;                   // one entry per literal
};

}  // namespace orvmesh::transfer
