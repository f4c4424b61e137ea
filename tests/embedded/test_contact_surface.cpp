#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "base/face_tables.h"
#include "embedded/mesh.h"
#include "platform/contact_surface.h"

namespace orvmesh::test {
namespace {

// A random mold of cells on a grid. What its mold faces touch follows from the grid's own node numbers, which
// both numberings of the mesh come from: one for all, or one per component a hair's breadth apart.
class GridMold {
 public:
  GridMold(unsigned seed, bool tetrahedra, bool split) : random_(seed), split_(split) {
    enum { kVoid = 3 };
    for (int cell = 0; cell < kCells * kCells * kCells; ++cell) {
      const int role = static_cast<int>(random_() % 4);
      if (role == kVoid) continue;
      int corner[8];
      for (int c = 0; c < 8; ++c)
        corner[c] = gridNode(cell % kCells + (c & 1), cell / kCells % kCells + (c >> 1 & 1),
                             cell / kCells / kCells + (c >> 2));
      for (const auto& local : tetrahedra ? kTetrahedra : kHexahedron) add(role, local, corner);
    }
  }

  struct Answer {
    int kind = 0, element = 0;
    std::array<int, 4> nodes{};
    bool operator==(const Answer&) const = default;
  };
  struct Question {
    std::array<int, 4> nodes;
    Answer answer;
  };
  // Every face of every mold element, which are the mesh's surface elements, too.
  std::vector<Question> questions() {
    std::vector<Question> list;
    for (const auto& [key, nodes] : moldFaces_) {
      const auto part = touched_[0].find(key);
      const auto channel = touched_[1].find(key);
      Answer answer;
      if (part != touched_[0].end())
        answer = part->second;
      else if (channel != touched_[1].end())
        answer = channel->second;
      list.push_back({nodes, answer});
      mesh.surfaces.push_back({nodes, 2, 1, 0, 0, 1, 0});
    }
    return list;
  }

  Mesh mesh;

 private:
  static constexpr int kCells = 4;
  enum Role { kPart, kChannel, kMold };
  using Key = std::set<int>;
  static inline const std::vector<std::vector<int>> kHexahedron{{0, 1, 3, 2, 4, 5, 7, 6}};
  static inline const std::vector<std::vector<int>> kTetrahedra{{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                                                {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};

  static int gridNode(int x, int y, int z) { return x + (kCells + 1) * (y + (kCells + 1) * z); }

  int nodeOf(int grid, int role) {
    const auto [at, isNew] = numbers_.try_emplace({split_ ? role : 0, grid}, 0);
    if (!isNew) return at->second;
    const int n = kCells + 1;
    const auto placed = [&](int cell) {
      return static_cast<float>(cell) + (split_ ? static_cast<float>(random_() % 3) * 5e-7F : 0.F);
    };
    mesh.nodes.push_back({placed(grid % n), placed(grid / n % n), placed(grid / n / n)});
    return at->second = static_cast<int>(mesh.nodes.size());
  }

  void add(int role, const std::vector<int>& local, const int (&corner)[8]) {
    auto& elements = role == kPart ? mesh.plastic : role == kChannel ? mesh.channel : mesh.mold;
    Mesh::Elem element{{}, 1, 7};
    for (const int n : local) element.nodes.push_back(nodeOf(corner[n], role));
    elements.push_back(element);
    for (const LocalFace& face : facesOf(static_cast<int>(local.size()))) {
      Key key;
      std::array<int, 4> nodes{};
      for (int k = 0; k < 4; ++k) {
        const auto place = static_cast<std::size_t>(face.nodes[std::min(k, face.nodeCount - 1)]);
        nodes[static_cast<std::size_t>(k)] = element.nodes[place];
        key.insert(corner[local[place]]);
      }
      if (role == kMold)
        moldFaces_.emplace_back(key, nodes);
      else
        touched_[role].try_emplace(key,
                                   Answer{role == kPart ? 1 : 3, static_cast<int>(elements.size()), nodes});
    }
  }

  std::mt19937 random_;
  bool split_;
  std::map<std::pair<int, int>, int> numbers_;
  std::vector<std::pair<Key, std::array<int, 4>>> moldFaces_;
  std::map<Key, Answer> touched_[2];
};

TEST(ContactSurface, MoldFacesTouchWhatLiesBehindThem) {
  const TempDir dir;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    GridMold mold(seed, seed % 2 == 0, seed % 4 >= 2);
    const auto questions = mold.questions();
    ASSERT_EQ(mold.mesh.write(dir / "mesh.ofe"), 1);
    COFEPatch_ElementSurface builder;
    ASSERT_EQ(builder.CreateContactSurface((dir / "mesh.ofe").c_str()), 1);
    int kinds[4] = {};
    for (const auto& question : questions) {
      auto asked = question.nodes;
      std::rotate(asked.begin(), asked.begin() + 1, asked.begin() + (asked[2] == asked[3] ? 3 : 4));
      if (question.nodes[2] == question.nodes[3]) asked[3] = asked[2];
      GridMold::Answer found;
      found.kind = builder.GetIfMolbaseFaceContact(asked.data(), found.element, found.nodes.data());
      EXPECT_EQ(found, question.answer) << "seed " << seed;
      ++kinds[found.kind];
    }
    EXPECT_TRUE(kinds[0] > 9 && kinds[1] > 9 && kinds[3] > 9);
  }
}

// Two corners of the common face lie closer than the tolerance; the numbers still match.
TEST(ContactSurface, FacesThinnerThanTheToleranceMatchByNumber) {
  const TempDir dir;
  Mesh mesh;
  mesh.nodes = {{0, 0, 0}, {1e-4F, 0, 0}, {0, 300, 0}, {0, 0, 300}, {0, 0, -300}};
  mesh.plastic = {{{1, 2, 3, 4}, 1, 1}};
  mesh.mold = {{{1, 3, 2, 5}, 1, 1}};
  mesh.surfaces = {{{1, 2, 3, 3}, 2, 1, 1, 0, 1, 0}};
  ASSERT_EQ(mesh.write(dir / "mesh.ofe"), 1);
  COFEPatch_ElementSurface builder;
  ASSERT_EQ(builder.CreateContactSurface((dir / "mesh.ofe").c_str()), 1);
  int nodes[4] = {1, 2, 3, 3}, element = 0, matched[4];
  EXPECT_EQ(builder.GetIfMolbaseFaceContact(nodes, element, matched), 1);
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
  for (const std::array<int, 4> foreign :
       {std::array{0, 1, 2, 2}, {1, 2, 6, 6}, {-1, 2, 3, 3}, {1, 1, 2, 2}}) {
    auto asked = foreign;
    EXPECT_EQ(builder.GetIfMolbaseFaceContact(asked.data(), element, matched), 0);
  }
}

}  // namespace
}  // namespace orvmesh::test
