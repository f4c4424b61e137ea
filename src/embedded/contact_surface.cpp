#include "platform/contact_surface.h"

#include <algorithm>
#include <optional>

#include "base/face_tables.h"
#include "embedded/face_groups.h"
#include "embedded/model_box.h"
#include "embedded/model_loader.h"
#include "embedded/node_weld.h"

namespace orvmesh::embedded {
namespace {

// What GetIfMolbaseFaceContact answers; of several elements on one face the lowest kind and number count.
enum Kind : std::uint8_t { kPart = 1, kChannel = 3 };

// The nodes of the mold's faces make up the set; they are compared with those of part and channel.
std::vector<std::uint8_t> nodeUses(const MeshModel& model) {
  std::vector<std::uint8_t> uses(static_cast<std::size_t>(model.nodes.count()) + 1, NodeWeld::kIgnored);
  for (const ElementTable* table : {&model.elemP, &model.elemC})
    for (const std::int32_t n : table->connectivity) uses[static_cast<std::size_t>(n)] = NodeWeld::kAsked;
  const SurfaceTable& surfaces = model.surfaces;
  for (std::size_t s = 0; s < surfaces.interfaceId.size(); ++s)
    if (surfaces.interfaceId[s] == 2 || surfaces.interfaceId[s] == 3)
      for (const std::int32_t n : surfaces.nodes.subspan(4 * s, 4))
        uses[static_cast<std::size_t>(n)] = NodeWeld::kMember;
  return uses;
}

std::array<std::int32_t, 4> faceNodes(std::span<const std::int32_t> nodes, const LocalFace& face) {
  std::array<std::int32_t, 4> list{};
  for (int k = 0; k < 4; ++k)
    list[static_cast<std::size_t>(k)] =
        nodes[static_cast<std::size_t>(face.nodes[std::min(k, face.nodeCount - 1)])];
  return list;
}

// The faces of part and channel elements whose nodes all lie on nodes of mold faces.
class ContactIndex {
 public:
  explicit ContactIndex(const MeshModel& model)
      : model_(model), weld_(model.nodes, nodeUses(model), weldTolerance(model)) {
    std::vector<HalfFace> halves;
    addElements(model.elemP, kPart, halves);
    addElements(model.elemC, kChannel, halves);
    buckets_.emplace(halves, model.nodes.count());
  }

  const HalfFace* find(const int* nodes) const {
    const std::int32_t list[4] = {nodes[0], nodes[1], nodes[2], nodes[3]};
    const auto key = keyOf(list);
    return key ? buckets_->find(*key) : nullptr;
  }

 private:
  std::optional<std::array<std::int32_t, 4>> keyOf(const std::int32_t (&nodes)[4]) const {
    std::array<std::int32_t, 4> key{};
    const std::size_t count = nodes[3] == nodes[2] || nodes[3] == 0 ? 3 : 4;
    const auto isNode = [this](std::int32_t n) { return 1 <= n && n <= model_.nodes.count(); };
    if (!std::all_of(nodes, nodes + count, isNode) || !weld_.keyOf(nodes, count, key)) return std::nullopt;
    return key;
  }

  void addElements(const ElementTable& table, Kind kind, std::vector<HalfFace>& halves) const {
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      const auto nodes = table.nodes(e);
      const auto welded = std::count_if(nodes.begin(), nodes.end(), [&](auto n) { return weld_.holds(n); });
      if (welded < 3) continue;
      const auto faces = facesOf(static_cast<int>(nodes.size()));
      for (std::size_t f = 0; f < faces.size(); ++f) {
        const auto list = faceNodes(nodes, faces[f]);
        if (const auto key = keyOf({list[0], list[1], list[2], list[3]}))
          halves.push_back({*key, e, kind, static_cast<std::uint8_t>(f)});
      }
    }
  }

  const MeshModel& model_;
  NodeWeld weld_;
  std::optional<FaceBuckets> buckets_;
};

}  // namespace
}  // namespace orvmesh::embedded

using orvmesh::embedded::ContactIndex;
using orvmesh::embedded::ModelLoader;
using orvmesh::embedded::OfeReader;

struct COFEPatch_ElementSurface::Implementation {
  OfeReader file;
  MeshModel model;
  std::optional<ContactIndex> index;
};

COFEPatch_ElementSurface::COFEPatch_ElementSurface() : implementation_(std::make_unique<Implementation>()) {}
COFEPatch_ElementSurface::~COFEPatch_ElementSurface() = default;

int COFEPatch_ElementSurface::CreateContactSurface(const char* ofePath) {
  auto& [file, model, index] = *implementation_;
  index.reset();
  model = {};
  if (ofePath == nullptr || !file.open(ofePath, false)) return 0;
  if (!ModelLoader(file, model).loadContactSides()) return 0;
  index.emplace(model);
  return 1;
}

int COFEPatch_ElementSurface::GetIfMolbaseFaceContact(int* faceNodes, int& matchedElement,
                                                      int* matchedFaceNodes) {
  if (!implementation_->index) return 0;
  const auto* const half = implementation_->index->find(faceNodes);
  if (half == nullptr) return 0;
  const MeshModel& model = implementation_->model;
  const auto nodes = (half->kind == orvmesh::embedded::kPart ? model.elemP : model.elemC).nodes(half->number);
  const auto list =
      orvmesh::embedded::faceNodes(nodes, orvmesh::facesOf(static_cast<int>(nodes.size()))[half->localFace]);
  std::copy(list.begin(), list.end(), matchedFaceNodes);
  matchedElement = half->number;
  return half->kind;
}
