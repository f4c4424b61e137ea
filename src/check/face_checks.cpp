#include <algorithm>

#include "base/face_buckets.h"
#include "base/face_tables.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

FaceKey keyOf(const LocalFace& face, std::span<const std::int32_t> nodes) {
  std::int32_t list[4] = {};
  for (int k = 0; k < face.nodeCount; ++k) list[k] = nodes[static_cast<std::size_t>(face.nodes[k])];
  return faceKey(list, face.nodeCount);
}

FaceKey keyOf(const MeshModel& model, std::int32_t surface) {
  const SurfaceElement face = model.surfaces[surface];
  return faceKey(face.nodes, face.nodeCount);
}

bool isFaceOf(const FaceKey& face, std::span<const std::int32_t> nodes) {
  if (face.bucket == 0) return false;
  const auto faces = facesOf(static_cast<int>(nodes.size()));
  return std::any_of(faces.begin(), faces.end(),
                     [&](const LocalFace& local) { return keyOf(local, nodes) == face; });
}

// The elements of a face; one that sees it twice counts once.
std::vector<ElementRef> elementsOf(const MeshModel& model, std::span<const BucketEntry> group) {
  std::vector<ElementRef> elements;
  for (std::size_t k = 0; k < group.size(); ++k)
    if (k == 0 || group[k].item != group[k - 1].item) elements.push_back(elementAt(model, group[k].item));
  return elements;
}

Entity crowdedFace(const MeshModel& model, std::uint32_t bucket, const BucketEntry& face,
                   const std::vector<ElementRef>& elements) {
  constexpr std::size_t kNamed = 4;
  const std::uint32_t words[] = {bucket, static_cast<std::uint32_t>(face.key >> 32),
                                 static_cast<std::uint32_t>(face.key), face.rest};
  std::array<std::int32_t, 4> nodes{};
  std::copy_n(words, 4, nodes.begin());
  std::string detail = "shared by ";
  for (std::size_t k = 0; k < std::min(kNamed, elements.size()); ++k)
    detail += (k == 0 ? "" : ", ") + textOf(elements[k]);
  if (elements.size() > kNamed) detail += " and " + std::to_string(elements.size() - kNamed) + " more";
  const std::span<const std::int32_t> used(nodes.data(), face.rest == 0 ? 3 : 4);
  return {"face", 0, detail, middleOf(model, used)};
}

void tellOfSurface(const MeshModel& model, std::int32_t s, bool onMesh, Collector& found) {
  const SurfaceElement surface = model.surfaces[s];
  const std::size_t block = ownerBlock(surface.interfaceId);
  const int part = block == kBlocks ? 0 : surface.interfaceId;
  const std::string interfaceText = "interface " + std::to_string(surface.interfaceId);
  const auto add = [&](Code code, auto detail) {
    found.add(code, part, [&] { return surfaceEntity(model, s, interfaceText + detail()); });
  };
  if (!onMesh) return add(Code::surfaceOffMesh, [] { return std::string(); });
  if (surface.elementNo == 0 && block != kBlocks)
    return add(Code::surfaceWithoutOwner, [] { return std::string(); });
  add(Code::surfaceNotOfOwner, [&] {
    if (block == kBlocks) return std::string(" has no owners (legal: 1 to 4)");
    const bool known = tableOf(model, block).holds(surface.elementNo);
    return ", names " + textOf({block, surface.elementNo}) + (known ? "" : ", which is not there");
  });
}

}  // namespace

std::vector<std::int32_t> surfacesOffOwner(const MeshModel& model) {
  std::vector<std::int32_t> off;
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    const auto i = static_cast<std::size_t>(s) - 1;
    const std::size_t block = ownerBlock(model.surfaces.interfaceId[i]);
    if (block != kBlocks) {
      const ElementTable& table = tableOf(model, block);
      if (table.count() == 0) continue;
      const std::int32_t owner = model.surfaces.elementNo[i];
      if (table.holds(owner) && isFaceOf(keyOf(model, s), table.nodes(owner))) continue;
    }
    off.push_back(s);
  }
  return off;
}

void checkFaces(const MeshModel& model, const ElementMarks& leftOut,
                const std::vector<std::int32_t>& surfaces, Collector& found) {
  const auto firstSurface = static_cast<std::uint32_t>(elementCount(model));
  const auto each = [&](auto use) {
    const auto add = [&use](const FaceKey& face, std::uint32_t item) {
      if (face.bucket != 0) use(face.bucket, BucketEntry{face.key, face.rest, item});
    };
    eachElement(model, [&](std::uint32_t item, std::span<const std::int32_t> nodes) {
      if (leftOut[item]) return;
      for (const LocalFace& face : facesOf(static_cast<int>(nodes.size()))) add(keyOf(face, nodes), item);
    });
    for (std::size_t k = 0; k < surfaces.size(); ++k)
      add(keyOf(model, surfaces[k]), firstSurface + static_cast<std::uint32_t>(k));
  };
  std::vector<bool> onMesh(surfaces.size());
  forEachGroup(model.nodes.count(), each, [&](std::uint32_t bucket, std::span<const BucketEntry> group) {
    std::size_t elements = group.size();
    while (elements > 0 && group[elements - 1].item >= firstSurface) --elements;
    if (elements > 0)
      for (const BucketEntry& entry : group.subspan(elements)) onMesh[entry.item - firstSurface] = true;
    if (elements <= 2) return;
    const auto sharers = elementsOf(model, group.first(elements));
    if (sharers.size() <= 2) return;
    found.add(Code::crowdedFace, 0, [&] { return crowdedFace(model, bucket, group[0], sharers); });
  });
  for (std::size_t k = 0; k < surfaces.size(); ++k) tellOfSurface(model, surfaces[k], onMesh[k], found);
}

}  // namespace orvmesh::check
