#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "embedded/mesh.h"
#include "platform/contact_surface.h"
#include "support/random_mold.h"

namespace orvmesh::test {
namespace {

using Element = RandomMold::Element;
using Nodes = std::array<int, 4>;
using Point = std::array<float, 3>;
using Key = std::set<Point>;

// A random mold of mixed elements whose nodes are moved by a hair's breadth: where they were tells what
// touches what.
struct ShakenMold : RandomMold {
  explicit ShakenMold(unsigned seed) : RandomMold(seed), places(nodes) {
    std::mt19937 random(seed);
    for (Point& node : nodes)
      for (float& x : node) x += static_cast<float>(random() % 3) * 5e-7F;
  }

  Key keyOf(const Nodes& face) const {
    Key key;
    for (const int n : face) key.insert(places[static_cast<std::size_t>(n) - 1]);
    return key;
  }

  // visit(number, element, key, nodes) for each face of the list's elements; a triangle's last node stands
  // twice.
  template <class Visit>
  void eachFace(int list, Visit visit) const {
    int number = 0;
    for (const Element& element : elements[list]) {
      ++number;
      for (const LocalFace& face : facesOf(static_cast<int>(element.nodes.size()))) {
        Nodes corners{};
        for (std::size_t k = 0; k < 4; ++k)
          corners[k] = element.nodes[static_cast<std::size_t>(
              face.nodes[std::min(static_cast<int>(k), face.nodeCount - 1)])];
        visit(number, element, keyOf(corners), corners);
      }
    }
  }

  std::vector<Point> places;
};

bool isInsert(const Element& e) { return 5002 <= e.a && e.a <= 10001; }

std::string lineOf(int surface, int kind, int owner, const Nodes& nodes) {
  std::string line = std::to_string(surface) + " " + std::to_string(kind) + " " + std::to_string(owner) + ":";
  for (const int n : nodes) line += " " + std::to_string(n);
  return line;
}

// What the contact faces must be by the definition.
std::vector<std::string> expectedFaces(const ShakenMold& mold) {
  struct Members {
    bool plastic = false;
    int inserts = 0, other = 0;
  };
  std::map<Key, Members> members;
  mold.eachFace(0, [&](int, const Element&, const Key& key, const Nodes&) { members[key].plastic = true; });
  mold.eachFace(1, [&](int, const Element& e, const Key& key, const Nodes&) {
    Members& m = members[key];
    m.inserts += isInsert(e);
    if (!isInsert(e) && m.other == 0) m.other = e.a;
  });
  std::vector<std::string> lines;
  int surface = 0;
  for (const RandomMold::Face& face : mold.faces) {
    const Members& m = members[mold.keyOf(face.nodes)];
    ++surface;
    if (m.plastic && m.inserts == 1 && (face.interfaceId == 1 || face.interfaceId == 2))
      lines.push_back(lineOf(surface, 0, 0, face.nodes));
  }
  mold.eachFace(1, [&](int, const Element& e, const Key& key, const Nodes& nodes) {
    const Members& m = members[key];
    if (isInsert(e) && m.other != 0 && m.inserts == 1) lines.push_back(lineOf(0, 1, m.other, nodes));
  });
  return lines;
}

std::vector<std::string> contactFacesOf(const auto& mold) {
  const TempDir dir;
  mold.write(dir / "mesh.ofe");
  COFEData data;
  EXPECT_EQ(data.ReadDataBin((dir / "mesh.ofe").c_str(), nullptr, 0, false), 1) << data.errorText();
  std::vector<std::string> lines;
  for (const ContactFaceRecord& r : data.contactFaces()) {
    EXPECT_EQ(r.nodes[0], 0);
    lines.push_back(
        lineOf(r.surfaceNo, r.faceType, r.faceOwner, {r.nodes[1], r.nodes[2], r.nodes[3], r.nodes[4]}));
  }
  return lines;
}

TEST(ContactFaces, AgreeWithTheDefinition) {
  std::size_t records = 0;
  for (unsigned seed = 0; seed < 3300; ++seed) {
    const ShakenMold mold(seed);
    if (mold.elements[1].size() < 40) continue;  // most are small
    const auto found = contactFacesOf(mold);
    EXPECT_EQ(found, expectedFaces(mold)) << seed;
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

// What GetIfMolbaseFaceContact tells.
struct Answer {
  int kind = 0, element = 0;
  Nodes nodes{};
  bool operator==(const Answer&) const = default;
};

// A part before a channel, the element with the lower number before another.
std::map<Key, Answer> touchedFaces(const ShakenMold& mold) {
  std::map<Key, Answer> touched;
  for (const auto& [list, kind] : {std::pair{0, 1}, {2, 3}})
    mold.eachFace(list, [&, kind = kind](int number, const Element&, const Key& key, const Nodes& nodes) {
      touched.try_emplace(key, Answer{kind, number, nodes});
    });
  return touched;
}

TEST(ContactSurface, MoldFacesTouchWhatLiesBehindThem) {
  const TempDir dir;
  int kinds[4] = {};
  for (unsigned seed = 0; seed < 600; ++seed) {
    ShakenMold mold(seed);
    if (mold.elements[1].size() < 40) continue;
    auto touched = touchedFaces(mold);
    std::vector<std::pair<Nodes, Answer>> questions;
    mold.eachFace(1, [&](int number, const Element&, const Key& key, const Nodes& nodes) {
      questions.emplace_back(nodes, touched[key]);
      mold.faces.push_back({nodes, 2, 1, 0, 0, number, 0});
    });
    mold.write(dir / "mesh.ofe");
    COFEPatch_ElementSurface builder;
    ASSERT_EQ(builder.CreateContactSurface((dir / "mesh.ofe").c_str()), 1);
    for (auto& [asked, answer] : questions) {
      const bool isTriangle = asked[2] == asked[3];
      std::rotate(asked.begin(), asked.begin() + 1, asked.begin() + (isTriangle ? 3 : 4));
      if (isTriangle) asked[3] = asked[2];
      Answer found;
      found.kind = builder.GetIfMolbaseFaceContact(asked.data(), found.element, found.nodes.data());
      EXPECT_EQ(found, answer) << "seed " << seed;
      ++kinds[found.kind];
    }
  }
  EXPECT_TRUE(kinds[0] > 99 && kinds[1] > 99 && kinds[3] > 99);
}

TEST(ContactSurface, NothingIsTouchedWithoutAFile) {
  COFEPatch_ElementSurface builder;
  EXPECT_EQ(builder.CreateContactSurface("/nowhere/mesh.ofe"), 0);
  int nodes[4] = {1, 2, 3, 3}, element = 0, matched[4];
  EXPECT_EQ(builder.GetIfMolbaseFaceContact(nodes, element, matched), 0);
  const TempDir dir;
  Mesh mesh = twoTetrahedra();
  mesh.surfaces[1].nodes = {1, 2, 3, 3};
  ASSERT_EQ(mesh.write(dir / "mesh.ofe"), 1);
  ASSERT_EQ(builder.CreateContactSurface((dir / "mesh.ofe").c_str()), 1);
  EXPECT_EQ(builder.GetIfMolbaseFaceContact(nodes, element, matched), 1);
  for (Nodes foreign : {Nodes{0, 1, 2, 2}, {1, 2, 6, 6}, {-1, 2, 3, 3}, {1, 1, 2, 2}})
    EXPECT_EQ(builder.GetIfMolbaseFaceContact(foreign.data(), element, matched), 0);
}

}  // namespace
}  // namespace orvmesh::test
