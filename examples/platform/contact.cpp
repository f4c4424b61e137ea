// Which faces coincide: nodes are compared each with each, faces by an ordered map.
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>

#include "base/face_tables.h"
#include "base/ranges.h"
#include "platform/cofedata.h"
#include "platform/contact_surface.h"

using namespace orvmesh;

namespace {

using Face = std::array<std::int32_t, 4>;  // a triangle's third node stands twice

Face localFace(std::span<const std::int32_t> nodes, const LocalFace& local) {
  Face face{};
  for (int k = 0; k < 4; ++k)
    face[static_cast<std::size_t>(k)] =
        nodes[static_cast<std::size_t>(local.nodes[std::min(k, local.nodeCount - 1)])];
  return face;
}

// Calls use(face, place) for every face of an element.
void eachFace(std::span<const std::int32_t> nodes, const auto& use) {
  const auto table = facesOf(static_cast<int>(nodes.size()));
  for (std::size_t f = 0; f < table.size(); ++f) use(localFace(nodes, table[f]), f);
}

// Nodes that lie within 1e-6 of the box's diagonal are one.
class Coincidence {
 public:
  explicit Coincidence(const NodeTable& nodes) : first_(static_cast<std::size_t>(nodes.count()) + 1) {
    double low[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, high[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (std::size_t i = 0; i < nodes.xyz.size(); ++i) {
      low[i % 3] = std::min(low[i % 3], double{nodes.xyz[i]});
      high[i % 3] = std::max(high[i % 3], double{nodes.xyz[i]});
    }
    const double width = 1e-6 * std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
    const auto liesOn = [&nodes, limit = width * width](std::size_t n, std::size_t m) {
      const float *const a = nodes.xyz.data() + 3 * (n - 1), *const b = nodes.xyz.data() + 3 * (m - 1);
      const double x = double{a[0]} - b[0], y = double{a[1]} - b[1], z = double{a[2]} - b[2];
      return x * x + y * y + z * z <= limit;
    };
    for (std::size_t n = 1; n < first_.size(); ++n) {
      std::size_t m = 1;
      while (m < n && !liesOn(n, m)) ++m;
      first_[n] = m == n ? static_cast<std::int32_t>(n) : first_[m];
    }
  }
  // The same for all faces that coincide; nothing for a face that is none.
  std::optional<Face> keyOf(const Face& face) const {
    Face key{};
    for (std::size_t k = 0; k < 4; ++k) {
      if (face[k] < 0 || static_cast<std::size_t>(face[k]) >= first_.size()) return std::nullopt;
      key[k] = first_[static_cast<std::size_t>(face[k] == 0 ? face[2] : face[k])];
    }
    std::sort(key.begin(), key.end());
    const auto end = std::unique(key.begin(), key.end());
    if (end - key.begin() < 3) return std::nullopt;
    std::fill(end, key.end(), 0);
    return key;
  }

 private:
  std::vector<std::int32_t> first_;
};

struct Members {
  bool plastic = false;
  int inserts = 0;
  std::pair<std::int32_t, std::size_t> insert;  // element and face
  std::int32_t otherMold = 0;
  std::vector<std::int32_t> surfaces;
};

std::map<Face, Members> membersOf(const MeshModel& model) {
  const Coincidence coincidence(model.nodes);
  std::map<Face, Members> faces;
  const auto at = [&](const Face& face, const auto& use) {
    if (const auto key = coincidence.keyOf(face)) use(faces[*key]);
  };
  for (std::int32_t e = 1; e <= model.elemP.count(); ++e)
    eachFace(model.elemP.nodes(e),
             [&](const Face& face, std::size_t) { at(face, [](Members& m) { m.plastic = true; }); });
  for (std::int32_t e = 1; e <= model.elemM.count(); ++e)
    eachFace(model.elemM.nodes(e), [&](const Face& face, std::size_t f) {
      at(face, [&](Members& m) {
        if (kInsertWritten.holds(model.elemM.material(e))) {
          ++m.inserts;
          m.insert = {e, f};
        } else if (m.otherMold == 0) {
          m.otherMold = e;
        }
      });
    });
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    const SurfaceElement surface = model.surfaces[s];
    if (surface.interfaceId == 1 || surface.interfaceId == 2)
      at({surface.nodes[0], surface.nodes[1], surface.nodes[2], surface.nodes[3]},
         [&](Members& m) { m.surfaces.push_back(s); });
  }
  return faces;
}

}  // namespace

const std::vector<ContactFaceRecord>& COFEData::contactFaces() {
  if (contactFaces_) return *contactFaces_;
  std::map<std::int32_t, ContactFaceRecord> ofSurfaces;
  std::map<std::pair<std::int32_t, std::size_t>, ContactFaceRecord> ofInserts;
  for (const auto& [key, members] : membersOf(model_)) {
    if (members.inserts != 1) continue;
    for (const std::int32_t s : members.surfaces) {
      if (!members.plastic) break;
      const SurfaceElement surface = model_.surfaces[s];
      const auto& n = surface.nodes;
      ofSurfaces[s] = {s, 0, 0, {0, n[0], n[1], n[2], n[3] == 0 ? n[2] : n[3]}};
    }
    if (members.otherMold == 0) continue;
    const auto nodes = model_.elemM.nodes(members.insert.first);
    const Face n = localFace(nodes, facesOf(static_cast<int>(nodes.size()))[members.insert.second]);
    ofInserts[members.insert] = {0, 1, model_.elemM.material(members.otherMold), {0, n[0], n[1], n[2], n[3]}};
  }
  contactFaces_ = std::make_unique<std::vector<ContactFaceRecord>>();
  for (const auto& [surface, record] : ofSurfaces) contactFaces_->push_back(record);
  for (const auto& [insert, record] : ofInserts) contactFaces_->push_back(record);
  return *contactFaces_;
}

struct COFEPatch_ElementSurface::Implementation {
  struct Match {
    int kind;
    std::int32_t element;
    Face face;
  };
  std::optional<Coincidence> coincidence;
  std::map<Face, Match> faces;

  void add(const ElementTable& table, int kind) {
    for (std::int32_t e = 1; e <= table.count(); ++e)
      eachFace(table.nodes(e), [&](const Face& face, std::size_t) {
        if (const auto key = coincidence->keyOf(face)) faces.emplace(*key, Match{kind, e, face});
      });
  }
};

COFEPatch_ElementSurface::COFEPatch_ElementSurface() : implementation_(std::make_unique<Implementation>()) {}
COFEPatch_ElementSurface::~COFEPatch_ElementSurface() = default;

int COFEPatch_ElementSurface::CreateContactSurface(const char* ofePath) {
  *implementation_ = {};
  COFEData data;
  if (data.ReadDataBin(ofePath, nullptr, 0, false) != 1) return 0;
  implementation_->coincidence.emplace(data.model().nodes);
  implementation_->add(data.model().elemP, 1);
  implementation_->add(data.model().elemC, 3);
  return 1;
}

int COFEPatch_ElementSurface::GetIfMolbaseFaceContact(int* faceNodes, int& matchedElement,
                                                      int* matchedFaceNodes) {
  const auto& [coincidence, faces] = *implementation_;
  const auto key = coincidence ? coincidence->keyOf({faceNodes[0], faceNodes[1], faceNodes[2], faceNodes[3]})
                               : std::nullopt;
  const auto found = key ? faces.find(*key) : faces.end();
  if (found == faces.end()) return 0;
  matchedElement = found->second.element;
  std::copy(found->second.face.begin(), found->second.face.end(), matchedFaceNodes);
  return found->second.kind;
}
