#include <algorithm>
#include <map>

#include "embedded/cell_grid.h"
#include "platform/contact_surface.h"

namespace orvmesh::test {
namespace {

// A mold and what its faces touch.
class GridMold : public CellGrid {
 public:
  GridMold(unsigned seed, bool tetrahedra, bool split) : CellGrid(seed, tetrahedra, split) {
    enum { kRoles = 4 };
    eachElement(kRoles, [this](int role, const std::vector<int>& grid) { add(role, grid); });
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

 private:
  enum Role { kPart, kChannel, kMold };
  void add(int role, const std::vector<int>& grid) {
    auto& elements = role == kPart ? mesh.plastic : role == kChannel ? mesh.channel : mesh.mold;
    Mesh::Elem element{{}, 1, 7};
    for (const int g : grid) element.nodes.push_back(nodeOf(g, role));
    elements.push_back(element);
    eachFace(grid, element.nodes, [&](int, const Key& key, const std::array<int, 4>& nodes) {
      if (role == kMold)
        moldFaces_.emplace_back(key, nodes);
      else
        touched_[role].try_emplace(key,
                                   Answer{role == kPart ? 1 : 3, static_cast<int>(elements.size()), nodes});
    });
  }

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
