#include <algorithm>
#include <cmath>
#include <map>

#include "embedded/cell_grid.h"

namespace orvmesh::test {
namespace {

// A mold and what its contact faces must be by the definition.
class RandomMold : public CellGrid {
 public:
  RandomMold(unsigned seed, bool tetrahedra, bool split) : CellGrid(seed, tetrahedra, split) {
    enum { kPart, kMold, kInsertA, kInsertB, kRoles = 5 };
    eachElement(kRoles, [this](int role, const std::vector<int>& grid) {
      // Material 5001 is typed as an insert and written as mold: no insert here.
      const int other = random_() % 2 ? 5001 : 1;
      add(role == kPart, role, grid,
          role == kPart      ? 1
          : role == kInsertA ? 5002
          : role == kInsertB ? 10001
                             : other);
    });
    addSurfaces(true);
    addSurfaces(false);
    std::shuffle(surfaceKeys_.begin(), surfaceKeys_.end(), random_);
    for (const auto& [key, surface] : surfaceKeys_) mesh.surfaces.push_back(surface);
  }

  std::vector<std::string> expected() const {
    std::map<Key, Members> faces;
    visitFaces([&](const Element& e, int face, const Key& key, const Mesh::Surface&) {
      Members& m = faces[key];
      if (e.isPlastic)
        m.plastic = true;
      else if (e.isInsert())
        m.inserts.push_back({e.number, face});
      else if (m.other == 0)
        m.other = e.material;
    });
    std::vector<std::string> lines;
    for (std::size_t s = 0; s < surfaceKeys_.size(); ++s) {
      const Members& m = faces.at(surfaceKeys_[s].first);
      if (m.plastic && m.inserts.size() == 1)
        lines.push_back(lineOf(static_cast<int>(s) + 1, 0, 0, surfaceKeys_[s].second));
    }
    visitFaces([&](const Element& e, int, const Key& key, const Mesh::Surface& face) {
      const Members& m = faces.at(key);
      if (e.isInsert() && m.other != 0 && m.inserts.size() == 1) lines.push_back(lineOf(0, 1, m.other, face));
    });
    return lines;
  }

  static std::string lineOf(int surface, int kind, int owner, const Mesh::Surface& face) {
    std::string line =
        std::to_string(surface) + " " + std::to_string(kind) + " " + std::to_string(owner) + ":";
    for (const int n : face.nodes) line += " " + std::to_string(n);
    return line;
  }

 private:
  struct Element {
    bool isPlastic;
    int number, material;
    std::vector<int> grid, nodes;
    bool isInsert() const { return !isPlastic && 5002 <= material && material <= 10001; }
  };
  struct Members {
    bool plastic = false;
    std::vector<std::pair<int, int>> inserts;
    int other = 0;
  };
  void add(bool isPlastic, int component, const std::vector<int>& grid, int material) {
    auto& list = isPlastic ? mesh.plastic : mesh.mold;
    Element element{isPlastic, static_cast<int>(list.size()) + 1, material, grid, {}};
    for (const int g : grid) element.nodes.push_back(nodeOf(g, component));
    list.push_back({element.nodes, material, 1});
    elements_.push_back(element);
  }

  template <class Visit>
  void visitFaces(Visit visit) const {
    for (const Element& e : elements_)
      eachFace(e.grid, e.nodes, [&](int face, const Key& key, const std::array<int, 4>& nodes) {
        visit(e, face, key, Mesh::Surface{nodes, e.isPlastic ? 1 : 2, 0, 0, 0, e.number, 0});
      });
  }

  // Half of the faces that no second element of the same list has; some of them on other interfaces.
  void addSurfaces(bool plastic) {
    std::map<Key, int> uses;
    visitFaces(
        [&](const Element& e, int, const Key& key, const auto&) { uses[key] += e.isPlastic == plastic; });
    visitFaces([&](const Element& e, int, const Key& key, Mesh::Surface surface) {
      if (e.isPlastic != plastic || uses[key] != 1 || random_() % 2 == 0) return;
      if (random_() % 8 == 0)
        surface.interfaceId = 3;
      else
        surfaceKeys_.emplace_back(key, surface);
    });
  }

  std::vector<Element> elements_;
  std::vector<std::pair<Key, Mesh::Surface>> surfaceKeys_;
};

std::vector<std::string> contactFacesOf(const Mesh& mesh) {
  const TempDir dir;
  EXPECT_EQ(mesh.write(dir / "mesh.ofe"), 1);
  COFEData data;
  EXPECT_EQ(data.ReadDataBin((dir / "mesh.ofe").c_str(), nullptr, 0, false), 1) << data.errorText();
  std::vector<std::string> lines;
  for (const ContactFaceRecord& r : data.contactFaces()) {
    EXPECT_EQ(r.nodes[0], 0);
    lines.push_back(RandomMold::lineOf(r.surfaceNo, r.faceType, r.faceOwner,
                                       {{r.nodes[1], r.nodes[2], r.nodes[3], r.nodes[4]}, 0, 0, 0, 0, 0, 0}));
  }
  return lines;
}

TEST(ContactFaces, AgreeWithTheDefinition) {
  std::size_t records = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    const RandomMold mold(seed, seed % 2 == 0, seed % 4 >= 2);
    const auto found = contactFacesOf(mold.mesh);
    EXPECT_EQ(found, mold.expected()) << seed;
    records += found.size();
  }
  EXPECT_GT(records, 1000);
}

// Gaps in units of the tolerance decide whether separately numbered components touch.
TEST(ContactFaces, ToleranceIsAMillionthOfTheDiagonal) {
  for (const auto& [gap, touches] :
       {std::pair{0.0, true}, {0.9, true}, {1.2, false}, {9.0, false}, {1e4, false}}) {
    Mesh mesh;
    const auto z = static_cast<float>(gap * 1e-6 * std::sqrt(3.0));
    mesh.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, -z}, {1, 0, -z}, {0, 1, -z}, {1, 1, -z}};
    // The box of what is used counts: a node of a far element does, a stray one does not.
    mesh.nodes.push_back({1, 1, 1});
    mesh.nodes.push_back({1e9F, 0, 0});
    mesh.channel = {{{1, 2, 3, 9}, 1, 1}};
    mesh.plastic = {{{1, 2, 3, 4}, 1, 1}};
    mesh.mold = {{{5, 6, 7, 8}, 5002, 0}};
    mesh.surfaces = {{{7, 6, 5, 0}, 2, 0, 0, 0, 1, 0}, {{1, 3, 2, 2}, 1, 0, 0, 0, 1, 0}};
    EXPECT_EQ(contactFacesOf(mesh).size(), touches ? 2 : 0) << gap;
  }
}

TEST(ContactFaces, DegenerateMeshes) {
  Mesh mesh = twoTetrahedra();
  mesh.mold[0].a = 5002;
  const auto found = contactFacesOf(mesh);
  EXPECT_FALSE(found.empty());
  // Elements thinner than the tolerance, down to all nodes in one place: the node numbers still say what
  // meets.
  for (const float size : {1e-4F, 0.F}) {
    for (auto& node : mesh.nodes) node[0] *= size;
    EXPECT_EQ(contactFacesOf(mesh), found) << size;
  }
  for (auto& node : mesh.nodes) node = {7, 7, 7};
  EXPECT_EQ(contactFacesOf(mesh), found);
  EXPECT_TRUE(contactFacesOf(Mesh{}).empty());
}

}  // namespace
}  // namespace orvmesh::test
