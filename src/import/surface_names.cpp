#include "import/surface_names.h"

#include <algorithm>
#include <tuple>

#include "base/failure.h"
#include "import/named_faces.h"

namespace orvmesh::importing {
namespace {

using Numbers = std::vector<std::int32_t>;

// Of names on each surface element, on average.
constexpr std::size_t kMostNames = 16;

class Placing {
 public:
  Placing(const VolumeMesh& volumes, const Surfaces& surfaces, const GroupRoles& groups,
          const RolesFile& roles)
      : volumes_(volumes),
        mesh_(volumes.mesh()),
        surfaces_(surfaces),
        groups_(groups),
        roles_(roles),
        namesOfSet_(mesh_.sets.size()),
        carriersOfSet_(mesh_.sets.size()),
        setsOfGroup_(groups.groups.size()),
        hasFace_(static_cast<std::size_t>(mesh_.nodeCount()) + 1) {}

  SurfaceNames place() {
    for (std::size_t s = 0; s < mesh_.sets.size(); ++s)
      for (const auto tag : mesh_.groupsOf(mesh_.sets[s]))
        setsOf(groups_.find(mesh_.sets[s].dimension, tag)).push_back(s);
    for (std::size_t k = 0; k < roles_.bcNames.size(); ++k)
      eachGroup(k, [&](const Group& group) { giveToSets(group, static_cast<std::int32_t>(k) + 1); });
    listFaces();
    // Where part and mold have a face there, it is the part's.
    for (std::size_t k = surfaces_.begin(1); k < surfaces_.end(1); ++k) claimFaces(k);
    for (std::size_t k = 0; k < surfaces_.faces.size(); ++k) claimFaces(k);
    for (std::size_t k = 0; k < surfaces_.faces.size(); ++k) placeOn(k);
    for (std::size_t k = 0; k < roles_.bcNames.size(); ++k)
      eachGroup(k, [&](const Group& group) { requireCarrier(group, k); });
    result_.facesWithout = static_cast<std::uint64_t>(
        std::count_if(faces_.begin(), faces_.end(), [](const Face& face) { return face.surface < 0; }));
    return std::move(result_);
  }

 private:
  struct Face {
    FaceNodes nodes;
    std::uint32_t set;
    std::int64_t surface;  // that carries its names, -1 for none
  };

  template <class Use>
  void eachGroup(std::size_t name, Use use) const {
    const auto& bcName = roles_.bcNames[name];
    for (std::size_t g = 0; g < bcName.groups.size(); ++g) {
      const auto& key = bcName.groups[g];
      const auto found = groups_.findAll(key);
      if (found.empty()) groups_.failUnknown(roles_, placeOf(bcName, g), key);
      if (found.back()->dimension < 2)
        throw Failure(roles_.path, placeOf(bcName, g) + ": " + found.back()->label() +
                                       " has no faces; expected a surface or volume group");
      for (const auto* group : found)
        if (group->dimension >= 2) use(*group);
    }
  }
  static std::string placeOf(const RolesFile::BcName& name, std::size_t group) {
    return name.path + ".groups[" + std::to_string(group) + "]";
  }
  void giveToSets(const Group& group, std::int32_t name) {
    for (const auto set : setsOf(group)) {
      auto& names = namesOfSet_[set];
      if (!names.empty() && names.back() == name) continue;
      requireRoom(++namesOfSets_);
      names.push_back(name);
    }
  }

  // What is asked for grows with the product of two files.
  void requireRoom(std::size_t names) const {
    if (names / kMostNames > surfaces_.faces.size())
      throw Failure(roles_.path, "bcNames: its groups put too many names on the surface elements; at most " +
                                     std::to_string(kMostNames) + " on each, on average");
  }

  // The faces of surface groups with names.
  void listFaces() {
    for (const auto& run : mesh_.runs) {
      if (mesh_.sets[run.set].dimension != 2 || namesOfSet_[run.set].empty() || !run.type->taken()) continue;
      const bool triangle = run.type->shape == Shape::triangle;
      for (std::uint32_t k = 0; k < run.count; ++k) {
        const auto* nodes = mesh_.cornersOfElement(run, k);
        faces_.push_back({sortedNodes(nodes, triangle), run.set, -1});
        for (int c = 0; c < (triangle ? 3 : 4); ++c) hasFace_[static_cast<std::size_t>(nodes[c])] = 1;
      }
    }
    std::sort(faces_.begin(), faces_.end(), [](const Face& a, const Face& b) {
      return std::tie(a.nodes, a.set) < std::tie(b.nodes, b.set);
    });
    const auto isSame = [](const Face& a, const Face& b) { return a.nodes == b.nodes && a.set == b.set; };
    faces_.erase(std::unique(faces_.begin(), faces_.end(), isSame), faces_.end());
  }

  std::span<Face> facesAt(const Surface& surface) {
    for (const auto node : surface.nodes)
      if (hasFace_[static_cast<std::size_t>(node)] == 0) return {};
    const Face key{sortedNodes(surface.nodes, surface.nodes[2] == surface.nodes[3]), 0, -1};
    const auto [first, last] = std::equal_range(
        faces_.begin(), faces_.end(), key, [](const Face& a, const Face& b) { return a.nodes < b.nodes; });
    return {first, last};
  }
  void claimFaces(std::size_t k) {
    for (auto& face : facesAt(surfaces_.faces[k]))
      if (face.surface < 0) face.surface = static_cast<std::int64_t>(k);
  }

  void placeOn(std::size_t k) {
    const auto& surface = surfaces_.faces[k];
    const auto begin = static_cast<std::ptrdiff_t>(result_.names.size());
    addNamesOf(volumes_.runOf(surface.element).set);
    for (const auto& face : facesAt(surface))
      if (face.surface == static_cast<std::int64_t>(k)) addNamesOf(face.set);
    const auto list = result_.names.begin() + begin;
    if (list == result_.names.end()) return;
    std::sort(list, result_.names.end());
    result_.names.erase(std::unique(list, result_.names.end()), result_.names.end());
    result_.surfaces.push_back(static_cast<std::int32_t>(k + 1));
    result_.ends.push_back(result_.names.size());
  }
  void addNamesOf(std::size_t set) {
    const auto& names = namesOfSet_[set];
    requireRoom(result_.names.size() + names.size());
    result_.names.insert(result_.names.end(), names.begin(), names.end());
    ++carriersOfSet_[set];
  }

  void requireCarrier(const Group& group, std::size_t name) const {
    std::uint64_t carriers = 0;
    for (const auto set : setsOf(group)) carriers += carriersOfSet_[set];
    if (carriers == 0)
      throw Failure(roles_.path, roles_.bcNames[name].path + ".groups: " + group.label() +
                                     " has no surface element (those lie where part, mold and channel end, "
                                     "not between elements of the mold)");
  }

  const std::vector<std::size_t>& setsOf(const Group& group) const {
    return setsOfGroup_[static_cast<std::size_t>(&group - groups_.groups.data())];
  }
  std::vector<std::size_t>& setsOf(const Group& group) {
    return setsOfGroup_[static_cast<std::size_t>(&group - groups_.groups.data())];
  }

  const VolumeMesh& volumes_;
  const MshMesh& mesh_;
  const Surfaces& surfaces_;
  const GroupRoles& groups_;
  const RolesFile& roles_;
  std::vector<Numbers> namesOfSet_;
  std::vector<std::uint64_t> carriersOfSet_;  // surface elements that lie on elements of the set
  std::vector<std::vector<std::size_t>> setsOfGroup_;
  std::size_t namesOfSets_ = 0;
  std::vector<std::uint8_t> hasFace_;  // by node: whether a listed face has it
  std::vector<Face> faces_;            // ascending by nodes
  SurfaceNames result_;
};

}  // namespace

SurfaceNames placeNames(const VolumeMesh& volumes, const Surfaces& surfaces, const GroupRoles& groups,
                        const RolesFile& roles) {
  const bool any = std::any_of(roles.bcNames.begin(), roles.bcNames.end(),
                               [](const auto& name) { return !name.groups.empty(); });
  return any ? Placing(volumes, surfaces, groups, roles).place() : SurfaceNames{};
}

}  // namespace orvmesh::importing
