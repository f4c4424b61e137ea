#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>

#include "base/face_tables.h"
#include "transfer/ctg/boundaries.h"
#include "transfer/ctg/element_faces.h"

using namespace orvmesh;
using namespace orvmesh::transfer;

namespace {

using List = std::vector<std::int32_t>;

// A table of elements given by their node lists.
struct Elements {
  explicit Elements(const std::vector<List>& lists) : fieldA(lists.size()) {
    for (const List& element : lists) {
      nodes.insert(nodes.end(), element.begin(), element.end());
      offsets.push_back(static_cast<std::int64_t>(nodes.size()));
      isMixed = isMixed || element.size() != lists.front().size();
    }
  }
  ElementTable table() const {
    ElementTable table;
    table.connectivity = nodes;
    table.fieldA = fieldA;
    if (isMixed) table.offsets = offsets;
    if (!isMixed && !fieldA.empty()) table.nodesPerElement = static_cast<std::int32_t>(offsets[1]);
    return table;
  }

  List nodes, fieldA;
  std::vector<std::int64_t> offsets{0};
  bool isMixed = false;
};

List faceNodes(const List& element, const LocalFace& local) {
  List nodes;
  for (int k = 0; k < local.nodeCount; ++k)
    nodes.push_back(element[static_cast<std::size_t>(local.nodes[k])]);
  return nodes;
}

// Plain search: lists of faces per node, the first that holds all nodes is taken.
struct PlainSearch {
  explicit PlainSearch(std::int32_t nodeCount) : atNode(static_cast<std::size_t>(nodeCount) + 1), faces(1) {}
  std::int32_t entryOf(const List& face) {
    for (const std::int32_t node : face) {
      const List& here = atNode[static_cast<std::size_t>(node)];
      if (here.empty()) break;
      for (const std::int32_t f : here)
        if (holds(faces[static_cast<std::size_t>(f)], face)) return -f;
    }
    faces.push_back(face);
    const auto number = static_cast<std::int32_t>(faces.size() - 1);
    for (const std::int32_t node : face) atNode[static_cast<std::size_t>(node)].push_back(number);
    return number;
  }
  static bool holds(const List& old, const List& face) {
    return old.size() == face.size() && std::all_of(face.begin(), face.end(), [&](std::int32_t n) {
             return std::find(old.begin(), old.end(), n) != old.end();
           });
  }
  std::vector<List> atNode;
  std::deque<List> faces;
};

void expectPlainSearch(const std::vector<List>& elements, std::int32_t nodeCount, const char* what) {
  const Elements table(elements);
  const ElementFaces found = matchElementFaces(table.table(), nodeCount);
  PlainSearch plain(nodeCount);
  List expected;
  std::int32_t skipped = 0;
  for (const List& element : elements) {
    const auto faces = facesOf(static_cast<int>(element.size()));
    skipped += faces.empty() ? 1 : 0;
    for (const LocalFace& local : faces) expected.push_back(plain.entryOf(faceNodes(element, local)));
  }
  ASSERT_EQ(countElementFaces(table.table()), expected.size()) << what;
  ASSERT_EQ(List(found.entries.get(), found.entries.get() + expected.size()), expected) << what;
  ASSERT_EQ(found.faceCount, static_cast<std::int32_t>(plain.faces.size()) - 1) << what;
  ASSERT_EQ(found.skipped, skipped) << what;
}

TEST(CtgFaces, AreThoseOfThePlainSearchInWhateverMesh) {
  std::mt19937 random(7);
  const auto below = [&](std::size_t n) { return random() % n; };
  for (int round = 0; round < 3000; ++round) {
    // Few nodes, so that faces are shared by many and elements repeat; in every third mesh nodes repeat, too.
    const std::size_t nodeCount = 8 + below(8);
    const bool repeats = round % 3 == 0;
    const bool tetrahedra = round % 4 == 1;
    std::vector<List> elements(1 + below(14));
    for (List& element : elements) {
      List nodes(nodeCount);
      for (std::size_t n = 0; n < nodeCount; ++n) nodes[n] = static_cast<std::int32_t>(n) + 1;
      std::shuffle(nodes.begin(), nodes.end(), random);
      if (repeats)
        for (int k = 0; k < 3; ++k) nodes[below(8)] = nodes[below(8)];
      const std::size_t size = tetrahedra ? 4 : std::array<std::size_t, 6>{4, 5, 6, 8, 7, 4}[below(6)];
      element.assign(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(size));
    }
    if (below(4) == 0) elements.push_back(elements.front());
    expectPlainSearch(elements, static_cast<std::int32_t>(nodeCount), "small");
  }
  // All around one node: buckets beyond any mesh that somebody meshed.
  std::vector<List> fan;
  for (int k = 0; k < 700; ++k) {
    List others{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    std::shuffle(others.begin(), others.end(), random);
    others.resize(k % 2 == 0 ? 3 : 7);
    others.push_back(1);
    fan.push_back(others);
  }
  expectPlainSearch(fan, 15, "fan");
  expectPlainSearch({}, 0, "empty");
}

// Faces and their nodes stand in this order in CTG files.
TEST(CtgFaces, FollowTheFaceTables) {
  const std::pair<int, const char*> cases[] = {{4, "132 241 342 143 "},
                                               {5, "1432 251 352 453 154 "},
                                               {6, "132 456 1254 2365 3146 "},
                                               {8, "1432 5678 1265 2376 3487 4158 "}};
  for (const auto& [nodeCount, expected] : cases) {
    std::string faces;
    for (const LocalFace& face : facesOf(nodeCount)) {
      for (int k = 0; k < face.nodeCount; ++k) faces += static_cast<char>('1' + face.nodes[k]);
      faces += ' ';
    }
    EXPECT_EQ(faces, expected);
  }
}

// Surfaces: nodes, interface, boundary type.
struct Surfaces {
  void add(const List& four, std::int32_t interfaceId, std::int32_t boundary) {
    nodes.insert(nodes.end(), four.begin(), four.end());
    interfaces.push_back(interfaceId);
    boundaries.push_back(boundary);
    zeros.push_back(0);
  }
  SurfaceTable table() const {
    SurfaceTable table;
    table.nodes = nodes;
    table.interfaceId = interfaces;
    table.boundaryType = boundaries;
    table.ownerCode = table.contactCode = table.elementNo = table.tag = zeros;
    return table;
  }
  List nodes, interfaces, boundaries, zeros;
};

TEST(CtgBoundaries, LaterSurfacesAndLastNodesWin) {
  Surfaces surfaces;
  surfaces.add({1, 2, 3, 4}, 1, 9);
  surfaces.add({4, 5, 6, 6}, 2, 9);
  surfaces.add({6, 7, 8, 0}, 3, 1);
  surfaces.add({9, 10, 11, 11}, 3, 2);
  surfaces.add({1, 2, 12, 12}, 4, 1);
  surfaces.add({13, 14, 15, 15}, 3, -2);
  surfaces.add({16, 17, 18, 18}, 3, 0x7FFFFFFF);
  const BoundaryNodes nodes = findBoundaryNodes(surfaces.table(), 20);
  List types;
  for (std::int32_t n = 1; n <= 20; ++n) types.push_back(nodes.type[n]);
  constexpr std::int32_t kWrapped = -0x7FFFFFFF;
  EXPECT_EQ(types, (List{1, 1, 1, 2, 2, 3, 3, 3, 4, 4, 4, 0, 0, 0, 0, kWrapped, kWrapped, kWrapped, 0, 0}));
  EXPECT_EQ((List{nodes.surfaces.part, nodes.surfaces.air, nodes.surfaces.coolant}), (List{1, 1, 4}));
  EXPECT_EQ(nodes.part, (List{1, 2, 3}));
  EXPECT_EQ(nodes.air, (List{4, 5}));
  EXPECT_EQ(nodes.coolant, (List{6, 7, 8}));

  const Elements elements({{1, 5, 9, 12}, {12, 13, 14, 19, 7}, {12, 13, 15, 20}, {16, 12, 13, 20}});
  const BoundaryFaces faces =
      findBoundaryFaces(elements.table(), matchElementFaces(elements.table(), 20), nodes.type);
  // 1 9 5; 5 12 1; 9 12 5; 1 12 9; of the pyramid all but its base; none; faces with node 16 only.
  EXPECT_EQ(faces.face, (List{1, 2, 3, 4, 6, 7, 8, 9, 14, 15, 16}));
  EXPECT_EQ(faces.type, (List{2, 1, 2, 4, 3, 3, 3, 3, kWrapped, kWrapped, kWrapped}));
  EXPECT_EQ((List{faces.faces.part, faces.faces.air, faces.faces.coolant}), (List{1, 2, 5}));
}

}  // namespace
