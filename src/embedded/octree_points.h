#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvmesh::embedded {

// The points of a nearest-point search: as they are set first, then those that can be found, in the order of
// the tree. Where many points are equal, each place stands once. Numbers are 1-based.
class OctreePoints {
 public:
  // Points beyond this belong into a set of their own, which is shrunk so that no square overflows.
  static constexpr double kFarPoint = 0x1p450;
  // From here on all points that are not far lie equally far away in double precision.
  static constexpr double kFarQuery = 0x1p510;

  void reset(int count);
  void set(int number, double x, double y, double z);
  // Leaves out what is not finite. Returns the set of the far points, closed as well.
  OctreePoints close();
  // Puts the places in the order in which a tree visits them. False, and everything as it was, when the same
  // point follows itself twice: gatherEqualPoints, then make the tree anew.
  bool reorder(const std::vector<std::uint32_t>& placeAt);
  void gatherEqualPoints();

  bool isClosed() const { return closed_; }
  int found() const { return found_; }  // points that can be found
  std::size_t places() const { return places_.size(); }
  // What coordinates were multiplied by: a power of two, 1 unless there are far points.
  double scale() const { return scale_; }
  int lowestNumberAt(std::size_t place) const { return places_[place].number; }
  // The next higher number at the same place; 0 when there is none.
  int nextNumber(int number) const { return next_.empty() ? 0 : next_[static_cast<std::size_t>(number)]; }

  // What nanoflann asks of a data set.
  std::size_t kdtree_get_point_count() const { return places(); }
  double kdtree_get_pt(std::size_t place, std::size_t axis) const { return places_[place].xyz[axis]; }
  template <class Box>
  bool kdtree_get_bbox(Box&) const {
    return false;
  }

 private:
  struct Place {
    double xyz[3];
    std::int32_t number;
    bool isFinite() const { return std::isfinite(xyz[0]) && std::isfinite(xyz[1]) && std::isfinite(xyz[2]); }
    bool isSameAs(const Place& other) const {
      return xyz[0] == other.xyz[0] && xyz[1] == other.xyz[1] && xyz[2] == other.xyz[2];
    }
  };
  struct Copy {
    std::int32_t original, number;  // of two points at one place
  };
  void shrink();
  void chain(const std::vector<Copy>& copies, std::int32_t highestNumber);

  std::vector<Place> places_;
  std::vector<std::int32_t> next_;
  double scale_ = 1;
  int found_ = 0;
  bool closed_ = false;
};

}  // namespace orvmesh::embedded
