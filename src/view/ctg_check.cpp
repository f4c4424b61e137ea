#include <algorithm>
#include <cmath>
#include <span>

#include "base/face_tables.h"
#include "base/failure.h"
#include "view/ctg_mesh.h"

namespace orvmesh::view {
namespace {

struct Vector {
  double x = 0, y = 0, z = 0;
  Vector& operator+=(const Vector& b) { return *this = {x + b.x, y + b.y, z + b.z}; }
  Vector operator-(const Vector& b) const { return {x - b.x, y - b.y, z - b.z}; }
  Vector operator*(double f) const { return {x * f, y * f, z * f}; }
  double length() const { return std::sqrt(x * x + y * y + z * z); }
};
Vector cross(const Vector& a, const Vector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// The area vectors of an element's faces add up to zero whatever the coordinates of its nodes are, as every
// edge is passed once in each sense: that the file has six digits of them costs nothing. What remains is the
// rounding of this sum, which is taken from the element's first node. The first part belongs to the largest
// face, the second to elements so thin that their faces are nothing beside their length.
constexpr double kFaceTolerance = 1e-9;
constexpr double kLengthTolerance = 1e-14;

// A face of one element: its nodes by [Node] numbers, as the face's line lists them.
struct ElementFace {
  std::int32_t nodes[4];
  std::size_t count;
};

class Checker {
 public:
  explicit Checker(const CtgMesh& mesh)
      : mesh_(mesh),
        sourceNode_(static_cast<std::size_t>(mesh.counts[kCtgNodes]) + 1),
        owners_(mesh.faces.size() + 1),
        lastOwner_(mesh.faces.size() + 1) {}

  CtgSummary check() {
    for (std::size_t e = 0; e < mesh_.property.size(); ++e) element(e);
    if (made_ != mesh_.counts[kCtgFaces]) fail("face " + number(made_ + 1) + " belongs to no element");
    checkNumbering();
    checkBoundaries();
    return summary();
  }

 private:
  static std::string number(std::int64_t n) { return std::to_string(n); }
  [[noreturn]] void fail(const std::string& what) const { throw Failure(mesh_.path, what); }
  std::string nameOf(std::size_t e, std::size_t j) const {
    return "element " + number(static_cast<std::int64_t>(e) + 1) + ", face " +
           number(static_cast<std::int64_t>(j) + 1);
  }

  void element(std::size_t e) {
    const std::span nodes(mesh_.elementNodes.data() + mesh_.nodeOffsets[e],
                          mesh_.nodeOffsets[e + 1] - mesh_.nodeOffsets[e]);
    const auto table = facesOf(static_cast<int>(nodes.size()));
    if (table.empty()) return;
    Vector sum;
    double largest = 0;
    const double length = lengthOf(nodes);
    for (std::size_t j = 0; j < table.size(); ++j) {
      const std::int32_t entry = mesh_.elementFaces[mesh_.faceOffsets[e] + j];
      own(e, j, entry);
      const Vector area = areaOf(faceOf(e, j, entry, table[j], nodes), nodes.front());
      sum += area * (entry > 0 ? 1 : -1);
      largest = std::max(largest, area.length());
    }
    if (sum.length() > kFaceTolerance * largest + kLengthTolerance * length * length)
      fail("element " + number(static_cast<std::int64_t>(e) + 1) +
           " is not closed: the area vectors of its faces do not add up to zero");
  }

  // Faces are numbered as elements make them; a face belongs to one or two.
  void own(std::size_t e, std::size_t j, std::int32_t entry) {
    if (entry > 0 && entry != made_ + 1)
      fail(nameOf(e, j) + " is made as number " + number(entry) + " (legal: " + number(made_ + 1) + ")");
    if (entry == 0 || -std::int64_t{entry} > made_)
      fail(nameOf(e, j) + " is " + number(entry) + ", which no element before it has made");
    if (entry > 0) ++made_;
    const auto face = static_cast<std::size_t>(std::abs(entry));
    // A collapsed element may have one face twice.
    if (lastOwner_[face] == static_cast<std::int32_t>(e) + 1) return;
    lastOwner_[face] = static_cast<std::int32_t>(e) + 1;
    if (++owners_[face] > 2)
      fail("face " + number(std::abs(entry)) + " belongs to a third element, number " +
           number(static_cast<std::int64_t>(e) + 1) + " (legal: one or two)");
  }

  // The element that makes a face tells which node of the source is which; any other must have the same
  // nodes.
  ElementFace faceOf(std::size_t e, std::size_t j, std::int32_t entry, const LocalFace& local,
                     std::span<const std::int32_t> nodes) {
    const auto& listed = mesh_.faces[static_cast<std::size_t>(std::abs(entry)) - 1];
    ElementFace own{{}, static_cast<std::size_t>(local.nodeCount)};
    for (std::size_t k = 0; k < own.count; ++k)
      own.nodes[k] = nodes[static_cast<std::size_t>(local.nodes[k])];
    bool same = (listed[3] == 0) == (own.count == 3);
    for (std::size_t k = 0; k < own.count && same; ++k) {
      std::int32_t& source = sourceNode_[static_cast<std::size_t>(own.nodes[k])];
      if (entry > 0 && source == 0) source = listed[k];
      if (entry > 0) {
        same = source == listed[k];
      } else {
        same = std::count(listed.begin(), listed.end(), source) == 1;
      }
    }
    if (!same)
      fail(nameOf(e, j) + " has other nodes than face " + number(std::abs(entry)) + " (legal: the same)");
    if (entry < 0) arrange(own, listed);
    return own;
  }
  // Puts the nodes of the face into the order of its line.
  void arrange(ElementFace& face, const std::array<std::int32_t, 4>& listed) const {
    const auto source = [this](std::int32_t node) { return sourceNode_[static_cast<std::size_t>(node)]; };
    const auto place = [&](std::size_t k) {
      return std::find(listed.begin(), listed.end(), source(face.nodes[k])) - listed.begin();
    };
    for (std::size_t i = 1; i < face.count; ++i)
      for (std::size_t k = i; k > 0 && place(k - 1) > place(k); --k)
        std::swap(face.nodes[k - 1], face.nodes[k]);
  }

  // [Node] leaves out nodes of the source, and keeps their order.
  void checkNumbering() const {
    std::int32_t last = 0;
    for (std::size_t n = 1; n < sourceNode_.size(); ++n) {
      if (sourceNode_[n] == 0) continue;
      if (sourceNode_[n] <= last)
        fail("node " + number(static_cast<std::int64_t>(n)) + " is number " + number(sourceNode_[n]) +
             " in [Face], not above " + number(last) + " of a node before it");
      last = sourceNode_[n];
    }
  }

  // A node or a face lies on one boundary at most; the plastic faces are listed twice.
  void checkBoundaries() const {
    using Lists = std::array<const std::vector<CtgBoundaryEntry>*, 3>;
    const auto checkLists = [this](const char* what, std::size_t count, const Lists& lists) {
      std::vector<bool> typed(count + 1);
      for (const auto* list : lists)
        for (const CtgBoundaryEntry& entry : *list) {
          if (entry.entity != 0 && typed[static_cast<std::size_t>(entry.entity)])
            fail(std::string(what) + " " + number(entry.entity) + " is on two boundaries (legal: one)");
          typed[static_cast<std::size_t>(entry.entity)] = true;
        }
    };
    checkLists("node", sourceNode_.size(), {&mesh_.plasticNodes, &mesh_.coolNodes, &mesh_.airNodes});
    checkLists("face", owners_.size(), {&mesh_.plasticFaces, &mesh_.coolFaces, &mesh_.airFaces});
    const auto isSame = [](const CtgBoundaryEntry& a, const CtgBoundaryEntry& b) {
      return a.entity == b.entity;
    };
    if (!std::equal(mesh_.plasticFaces.begin(), mesh_.plasticFaces.end(), mesh_.ofePlasticFaces.begin(),
                    mesh_.ofePlasticFaces.end(), isSame))
      fail("[OFE Plastic Boundary Face] differs from [Plastic Boundary Face]");
  }

  Vector at(std::int32_t node) const {
    const double* p = mesh_.xyz.data() + 3 * (static_cast<std::size_t>(node) - 1);
    return {p[0], p[1], p[2]};
  }
  double lengthOf(std::span<const std::int32_t> nodes) const {
    double length = 0;
    for (const std::int32_t n : nodes) length = std::max(length, (at(n) - at(nodes.front())).length());
    return length;
  }
  Vector areaOf(const ElementFace& face, std::int32_t origin) const {
    Vector sum;
    for (std::size_t k = 0; k < face.count; ++k)
      sum += cross(at(face.nodes[k]) - at(origin), at(face.nodes[(k + 1) % face.count]) - at(origin)) * 0.5;
    return sum;
  }

  CtgSummary summary() const {
    std::vector<bool> typed(owners_.size());
    for (const auto* list : {&mesh_.plasticFaces, &mesh_.coolFaces, &mesh_.airFaces})
      for (const CtgBoundaryEntry& entry : *list) typed[static_cast<std::size_t>(entry.entity)] = true;
    CtgSummary found;
    for (std::size_t f = 1; f < owners_.size(); ++f) {
      found.interiorFaces += owners_[f] == 2 ? 1 : 0;
      found.boundaryFaces += owners_[f] == 1 ? 1 : 0;
      found.untypedBoundaryFaces += owners_[f] == 1 && !typed[f] ? 1 : 0;
    }
    return found;
  }

  const CtgMesh& mesh_;
  std::vector<std::int32_t> sourceNode_;  // by [Node] number: the number that faces use
  std::vector<std::uint8_t> owners_;      // elements of each face
  std::vector<std::int32_t> lastOwner_;
  std::int32_t made_ = 0;
};

}  // namespace

CtgSummary checkCtg(const CtgMesh& mesh) { return Checker(mesh).check(); }

}  // namespace orvmesh::view
