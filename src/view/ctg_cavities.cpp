#include "view/ctg_cavities.h"

#include <algorithm>
#include <set>

#include "base/face_tables.h"
#include "base/failure.h"
#include "base/ranges.h"
#include "platform/ofv_mesh.h"

namespace orvmesh::view {
namespace {

class Converter {
 public:
  explicit Converter(const CtgMesh& mesh) : mesh_(mesh) {}

  CtgCavities convert(std::span<const std::int32_t> channels, double scale) {
    nodes(scale);
    cavities(channels);
    faces();
    inlets();
    return std::move(made_);
  }

 private:
  void nodes(double scale) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      auto& values = axis == 0 ? made_.x : axis == 1 ? made_.y : made_.z;
      values.resize(mesh_.xyz.size() / 3 + 1);
      for (std::size_t n = 1; n < values.size(); ++n) values[n] = scale * mesh_.xyz[3 * (n - 1) + axis];
    }
  }

  void cavities(std::span<const std::int32_t> channels) {
    std::vector<std::int32_t> numbers = mesh_.property;
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    for (const std::int32_t channel : channels)
      if (!std::binary_search(numbers.begin(), numbers.end(), channel))
        throw Failure(mesh_.path, "no element has the property " + std::to_string(channel) +
                                      " (orvmesh info lists those that there are)");
    made_.cavityNumber = made_.cavityKind = made_.cellCavity = {0};
    made_.cavityNumber.insert(made_.cavityNumber.end(), numbers.begin(), numbers.end());
    for (const std::int32_t number : numbers) {
      const bool isChannel = std::find(channels.begin(), channels.end(), number) != channels.end();
      made_.cavityKind.push_back(isChannel ? kCavityChannel : kCavityOther);
    }
    made_.cellCavity.reserve(mesh_.property.size() + 1);
    for (const std::int32_t property : mesh_.property) {
      const auto at = std::lower_bound(numbers.begin(), numbers.end(), property);
      made_.cellCavity.push_back(static_cast<std::int32_t>(at - numbers.begin()) + 1);
    }
  }

  // The elements name the nodes as [Node] numbers them, [Face] does not.
  void faces() {
    made_.faceNodeCount = made_.faceNodes = made_.owner = {0};
    made_.neighbour.resize(mesh_.faces.size() + 1);
    for (std::size_t e = 0; e < mesh_.property.size(); ++e) {
      const std::int32_t* const own = mesh_.elementNodes.data() + mesh_.nodeOffsets[e];
      const auto table = facesOf(static_cast<int>(mesh_.nodeOffsets[e + 1] - mesh_.nodeOffsets[e]));
      for (std::size_t j = 0; j < table.size(); ++j) {
        const std::int32_t entry = mesh_.elementFaces[mesh_.faceOffsets[e] + j];
        const auto cell = static_cast<std::int32_t>(e) + 1;
        if (entry > 0)
          addFace(own, table[j], cell);
        else
          made_.neighbour[static_cast<std::size_t>(-entry)] = cell;
      }
    }
  }
  void addFace(const std::int32_t* nodes, const LocalFace& face, std::int32_t owner) {
    for (int k = 0; k < face.nodeCount; ++k) made_.faceNodes.push_back(nodes[face.nodes[k]]);
    made_.faceNodeCount.push_back(face.nodeCount);
    made_.owner.push_back(owner);
  }

  void inlets() {
    std::set<std::int32_t> groups;
    for (const CtgBoundaryEntry& face : mesh_.coolFaces)
      if (1 <= face.number && face.number <= kLastGroup) groups.insert(face.number);
    made_.inletID = made_.inletGroup = {0};
    for (const std::int32_t group : groups) {
      made_.inletID.push_back(static_cast<std::int32_t>(made_.inletID.size()));
      made_.inletGroup.push_back(group);
    }
  }

  const CtgMesh& mesh_;
  CtgCavities made_;
};

}  // namespace

CtgCavities cavitiesOf(const CtgMesh& mesh, std::span<const std::int32_t> channels, double scale) {
  return Converter(mesh).convert(channels, scale);
}

}  // namespace orvmesh::view
