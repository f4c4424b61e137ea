#include "embedded/contact_faces.h"

#include <algorithm>
#include <tuple>

#include "base/face_tables.h"
#include "base/ranges.h"
#include "embedded/face_groups.h"
#include "embedded/model_box.h"
#include "embedded/node_weld.h"

namespace orvmesh::embedded {
namespace {

enum Kind : std::uint8_t { kPlastic, kOtherMold, kInsert, kSurface };

bool isInsert(const MeshModel& model, std::int32_t e) {
  return kInsertWritten.holds(model.elemM.material(e));
}

// Collects the halves of the faces that can be contact faces: of plastic and other mold elements those whose
// nodes all lie on insert nodes, of inserts and surfaces those whose nodes all lie on nodes of such a face.
class ContactCollector {
 public:
  ContactCollector(const MeshModel& model, const std::vector<std::uint8_t>& insertNodes)
      : model_(model),
        weld_(model.nodes, insertNodes, weldTolerance(model)),
        touched_(static_cast<std::size_t>(model.nodes.count()) + 1) {}

  const std::vector<HalfFace>& collect();

 private:
  void addElement(std::span<const std::int32_t> nodes, std::int32_t number, Kind kind);
  void addOuterElement(std::span<const std::int32_t> nodes, std::int32_t number, Kind kind);
  void addFace(const std::int32_t* nodes, std::size_t count, std::int32_t number, Kind kind,
               std::size_t face);

  const MeshModel& model_;
  NodeWeld weld_;
  std::vector<std::uint8_t> touched_;  // by representative
  std::vector<HalfFace> halves_;
};

const std::vector<HalfFace>& ContactCollector::collect() {
  const ElementTable& plastic = model_.elemP;
  const ElementTable& mold = model_.elemM;
  for (std::int32_t e = 1; e <= plastic.count(); ++e) addOuterElement(plastic.nodes(e), e, kPlastic);
  for (std::int32_t e = 1; e <= mold.count(); ++e)
    if (!isInsert(model_, e)) addOuterElement(mold.nodes(e), e, kOtherMold);
  for (const HalfFace& half : halves_)
    for (const std::int32_t n : half.nodes) touched_[static_cast<std::size_t>(weld_[n])] = 1;
  touched_[0] = 0;
  for (std::int32_t e = 1; e <= mold.count(); ++e)
    if (isInsert(model_, e)) addElement(mold.nodes(e), e, kInsert);
  const SurfaceTable& surfaces = model_.surfaces;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    const std::int32_t interfaceId = surfaces.interfaceId[static_cast<std::size_t>(s) - 1];
    if (interfaceId != 1 && interfaceId != 2) continue;
    const SurfaceElement surface = surfaces[s];
    addFace(surface.nodes, static_cast<std::size_t>(surface.nodeCount), s, kSurface, 0);
  }
  return halves_;
}

void ContactCollector::addOuterElement(std::span<const std::int32_t> nodes, std::int32_t number, Kind kind) {
  int welded = 0;
  for (const std::int32_t n : nodes) welded += weld_.holds(n) ? 1 : 0;
  if (welded >= 3) addElement(nodes, number, kind);
}

void ContactCollector::addElement(std::span<const std::int32_t> nodes, std::int32_t number, Kind kind) {
  const auto faces = facesOf(static_cast<int>(nodes.size()));
  for (std::size_t f = 0; f < faces.size(); ++f) {
    std::int32_t list[4] = {};
    const auto count = static_cast<std::size_t>(faces[f].nodeCount);
    for (std::size_t k = 0; k < count; ++k) list[k] = nodes[static_cast<std::size_t>(faces[f].nodes[k])];
    addFace(list, count, number, kind, f);
  }
}

void ContactCollector::addFace(const std::int32_t* nodes, std::size_t count, std::int32_t number, Kind kind,
                               std::size_t face) {
  const auto isTouched = [this](std::int32_t n) { return touched_[static_cast<std::size_t>(weld_[n])] != 0; };
  if (kind != kPlastic && kind != kOtherMold && !std::all_of(nodes, nodes + count, isTouched)) return;
  HalfFace half{{}, number, kind, static_cast<std::uint8_t>(face)};
  if (weld_.keyOf(nodes, count, half.nodes)) halves_.push_back(half);
}

// What the halves of one face say about it.
struct FaceMembers {
  bool plastic = false;
  int inserts = 0;
  HalfFace insert{};
  std::int32_t otherMold = 0;  // the lowest
};

FaceMembers membersOf(std::span<const HalfFace> halves) {
  FaceMembers members;
  for (const HalfFace& half : halves) {
    if (half.kind == kPlastic) members.plastic = true;
    if (half.kind == kOtherMold && members.otherMold == 0) members.otherMold = half.number;
    if (half.kind != kInsert) continue;
    members.insert = half;
    ++members.inserts;
  }
  return members;
}

ContactFaceRecord recordOfSurface(const MeshModel& model, std::int32_t surfaceNo) {
  const SurfaceElement surface = model.surfaces[surfaceNo];
  const auto& n = surface.nodes;
  return {surfaceNo, 0, 0, {0, n[0], n[1], n[2], surface.nodeCount == 3 ? n[2] : n[3]}};
}

// A face between an insert and another mold element.
struct InsertFace {
  std::int32_t element;
  std::uint8_t localFace;
  std::int32_t other;
  bool operator<(const InsertFace& b) const {
    return std::tie(element, localFace) < std::tie(b.element, b.localFace);
  }
};

ContactFaceRecord recordOfInsertFace(const MeshModel& model, const InsertFace& face) {
  const auto nodes = model.elemM.nodes(face.element);
  const LocalFace& local = facesOf(static_cast<int>(nodes.size()))[face.localFace];
  ContactFaceRecord record{0, 1, model.elemM.material(face.other), {}};
  for (int k = 0; k < 4; ++k)
    record.nodes[k + 1] = nodes[static_cast<std::size_t>(local.nodes[std::min(k, local.nodeCount - 1)])];
  return record;
}

}  // namespace

std::vector<ContactFaceRecord> findContactFaces(const MeshModel& model) {
  std::vector<std::uint8_t> insertNodes(static_cast<std::size_t>(model.nodes.count()) + 1);
  bool anyInsert = false;
  for (std::int32_t e = 1; e <= model.elemM.count(); ++e) {
    if (!isInsert(model, e)) continue;
    anyInsert = true;
    for (const std::int32_t n : model.elemM.nodes(e)) insertNodes[static_cast<std::size_t>(n)] = 1;
  }
  if (!anyInsert) return {};

  ContactCollector collector(model, insertNodes);
  std::vector<std::int32_t> surfaces;
  std::vector<InsertFace> insertFaces;
  const FaceBuckets faces(collector.collect(), model.nodes.count());
  faces.forEachFace([&](std::span<const HalfFace> halves) {
    // A face between two insert elements lies inside the inserts, whatever else is there.
    const FaceMembers members = membersOf(halves);
    if (members.inserts != 1) return;
    if (members.otherMold != 0)
      insertFaces.push_back({members.insert.number, members.insert.localFace, members.otherMold});
    if (!members.plastic) return;
    for (const HalfFace& half : halves)
      if (half.kind == kSurface) surfaces.push_back(half.number);
  });
  std::sort(surfaces.begin(), surfaces.end());
  std::sort(insertFaces.begin(), insertFaces.end());

  std::vector<ContactFaceRecord> records;
  records.reserve(surfaces.size() + insertFaces.size());
  for (const std::int32_t s : surfaces) records.push_back(recordOfSurface(model, s));
  for (const InsertFace& face : insertFaces) records.push_back(recordOfInsertFace(model, face));
  return records;
}

}  // namespace orvmesh::embedded
