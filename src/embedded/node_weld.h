#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh::embedded {

// Which nodes lie where a node of some set lies: the same node, or one of its own number within the
// tolerance. Such nodes share one representative of the set.
class NodeWeld {
 public:
  enum Use : std::uint8_t { kAsked, kMember, kIgnored };
  // uses[n]: node n belongs to the set, may be asked for, or never is; entry 0 is not used.
  NodeWeld(const NodeTable& nodes, const std::vector<std::uint8_t>& uses, double tolerance);

  // The representative's node number; 0 for a node that lies on no member.
  std::int32_t operator[](std::int32_t node) const { return representative_[static_cast<std::size_t>(node)]; }
  // What a face is known by, in the order of half-faces: its representatives, or its own nodes where fewer
  // than three representatives would be left. False when a node lies on no member or fewer than three differ.
  bool keyOf(const std::int32_t* nodes, std::size_t count, std::array<std::int32_t, 4>& key) const;
  bool holds(std::int32_t node) const {
    const auto n = static_cast<std::uint32_t>(node);
    return ((bits_[n / 64] >> (n % 64)) & 1) != 0;
  }

 private:
  using Point = std::array<double, 3>;
  struct Box {
    Point low, high;
    void add(const Point& p);
    bool holds(const Point& p, double margin) const;
  };
  struct Cells {
    std::uint32_t first[3], last[3];
  };

  Point point(std::int32_t node) const;
  void weld(const std::vector<std::uint8_t>& uses);
  void prepareGrid(std::size_t memberCount);
  Cells cellsAround(const Point& p) const;
  std::uint64_t hashOf(std::uint32_t x, std::uint32_t y, std::uint32_t z) const;
  std::int32_t nearest(const Point& p) const;
  void insert(std::int32_t node);

  const NodeTable& nodes_;
  double tolerance_;  // in the file's own lengths
  std::vector<std::int32_t> representative_;
  std::vector<std::uint64_t> bits_;

  // Another one in every run, so that no file can be made whose cells all meet in one chain.
  std::uint64_t seed_ = reinterpret_cast<std::uintptr_t>(this);

  // The grid over the representatives, in the file's own lengths.
  Point origin_{};
  double cellsPerLength_ = 0;
  std::vector<std::uint64_t> occupied_;  // a bit per hash: most questions end here
  std::vector<std::int32_t> heads_;      // by hash: the last representative inserted, 0 for none
  std::vector<std::int32_t> next_;       // by slot of a representative
  std::vector<std::int32_t> inserted_;   // node number of a slot
};

}  // namespace orvmesh::embedded
