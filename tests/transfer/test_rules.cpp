#include <algorithm>
#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>

#include "embedded/block_reader.h"
#include "embedded/ofe_layout.h"
#include "transfer/blocks/layers.h"
#include "transfer/mold.h"
#include "transfer/prepass/inlets.h"
#include "transfer/prepass/node_typing.h"
#include "transfer/prepass/part_inserts.h"
#include "transfer/rules/boundary_codes.h"
#include "transfer/rules/face_rules.h"
#include "transfer/solver_mesh_writer.h"
#include "transfer/variants.h"

using namespace orvmesh;
using namespace orvmesh::test;
using namespace orvmesh::transfer;

namespace {

using ElementRules = Transfers;

TEST_F(ElementRules, MaterialsAtTheEdgesOfTheRanges) {
  // Material of a mold element; material in the mold-base mesh; block in the joined mesh; typed as an insert.
  const struct {
    int material, moldBase;
    char joined;
    bool typed;
  } rows[] = {{1, 1, 'M', false},        {2, 5002, 'M', false},      {4999, 9999, 'M', false},
              {5000, 10000, 'M', false}, {5001, 5001, 'M', true},    {5002, 5002, 'P', true},
              {9999, 9999, 'P', true},   {10000, 10000, 'P', false}, {10001, 10001, 'P', false},
              {10002, 6002, 'M', false}, {10899, 6899, 'M', false},  {10900, 10900, 'M', false},
              {10901, 6901, 'M', false}, {11900, 7900, 'M', false},  {0, 0, 'M', false},
              {-3, -3, 'M', false}};
  // Each is that of an element of its own nodes.
  auto source = nlohmann::json::parse(R"({"header": {"fields": {"0": 14001, "18": 1}}})");
  Lines moldBase, joined[2];
  for (const auto& row : rows) {
    nlohmann::json nodes;
    for (std::size_t k = 0; k < 4; ++k) {
      source["nodes"].push_back({10 * moldBase.size() + k % 2, k / 2, k / 3});
      nodes.push_back(source["nodes"].size());
    }
    source["elementsMoldBase"].push_back({{"nodes", nodes}, {"a", row.material}, {"b", 5}});
    moldBase.push_back(words(nodes) + " | 1 " + std::to_string(row.moldBase));
    const std::string material = std::to_string(row.material);
    joined[row.joined == 'P'].push_back(words(nodes) + " | " +
                                        (row.joined == 'P' ? "1 " + material : material + " 5"));
  }
  EXPECT_EQ(elementLines(transferred("moldbase", source), "elementsPlastic"), moldBase);
  const auto file = transferred("part-inserts", source);
  EXPECT_EQ(elementLines(file, "elementsMoldBase"), joined[0]);
  EXPECT_EQ(elementLines(file, "elementsPlastic"), joined[1]);
  std::vector<int> types(4 * std::size(rows) + 1);
  transfer.GetPIGloalNodeType(types.data());
  for (std::size_t i = 0; i < std::size(rows); ++i)
    EXPECT_EQ(types[4 * i + 1], rows[i].typed ? NodeType_PartInsert : NodeType_Mold) << rows[i].material;
}

TEST(FaceRules, ChannelGroupsComeFromTheInletsOrTheFaceItself) {
  std::stringstream console;
  COrvSolverMeshWriter worker(console, console);
  worker.found.inlets = std::vector<std::int32_t>(1001, 0);
  worker.found.inlets[1] = 41;
  worker.found.inlets[999] = 42;
  worker.found.inlets[1000] = 43;
  SurfaceElement face{};
  face.boundaryType = 6;
  for (const auto& [tag, group] : std::initializer_list<std::pair<std::uint32_t, int>>{
           {0, 6}, {1U << 8, 41}, {999U << 8, 42}, {1000U << 8, 6}, {0x8FFFFFFF, 6}, {0xF00001FF, 41}}) {
    face.tag = tag;
    EXPECT_EQ(channelGroup(face, worker), group) << tag;
  }
  worker.found.inlets.resize(5);  // a list that is shorter than the group
  face.tag = 5U << 8;
  EXPECT_EQ(channelGroup(face, worker), 6);
}

TEST(FaceRules, HotRunnerFacesAtTheEdges) {
  std::stringstream console;
  const COrvSolverMeshWriter worker(console, console);  // no gates, no elements
  // Type and tag as they are stored, and as they are written unless the face is dropped, as those of a common
  // gate without a number are (0x203, 0x205). Those of any other gate are written all the same (0x206).
  struct Row {
    int type;
    std::uint32_t tag;
    std::string written;
  };
  for (const auto& [type, tag, expected] :
       {Row{0, 1, ""}, Row{1, 6, "1 6"}, Row{1, 0x507, "1 507"}, Row{-1, 1, ""}, Row{14, 1, ""},
        Row{3, 1, ""}, Row{7, 2, ""}, Row{12, 4, ""}, Row{13, 0, "0 1"}, Row{2, 9, "0 1"}, Row{5, 0, ""},
        Row{4, 0x203, ""}, Row{4, 0x205, ""}, Row{4, 0x201, "0 1"}, Row{4, 0x202, "0 1"},
        Row{4, 0x204, "0 1"}, Row{14, 0x206, "7 fffff06"}, Row{-1, 0x206, "7 fffff06"}}) {
    SurfaceElement face{3, 1, 0, 0, type, 0, {1, 2, 3, 0}, tag};
    FaceCarry carry;
    std::ostringstream written;
    if (const auto kept = hotRunnerFace(face, worker, carry))
      written << kept->boundaryType << " " << std::hex << kept->tag;
    EXPECT_EQ(written.str(), expected) << type << " " << tag;
    face.interfaceId = 2;
    EXPECT_FALSE(hotRunnerFace(face, worker, carry));
  }
}

TEST(FaceRules, ContactRecordsOfOtherKindsBecomePartFaces) {
  for (const int kind : {0, 3}) EXPECT_FALSE(contactFace({1, kind, 5002, {0, 1, 2, 3, 3}})) << kind;
  for (const int kind : {1, 2, 4}) {
    const auto face = contactFace({0, kind, 5002, {0, 4, 5, 6, 7}});
    ASSERT_TRUE(face);
    const Face expected{{4, 5, 6, 7}, 1, 5002, kind, 0, 0, 1};
    EXPECT_EQ(std::memcmp(&*face, &expected, sizeof expected), 0) << kind;
  }
  const auto counts =
      countContacts({{1, 0, 0, {}}, {0, 3, 0, {}}, {0, 1, 5, {}}, {0, 2, 5, {}}, {2, 0, 0, {}}});
  EXPECT_EQ(std::pair(counts.interior, counts.other), std::pair(2, 2));
}

TEST(Layers, MoldMetalsAsPartInsertLayers) {
  for (const auto& [metal, insert] : std::initializer_list<std::pair<int, int>>{
           {1, 1}, {2, 5002}, {4999, 9999}, {5000, 5000}, {6000, 6000}, {6001, 2001}})
    EXPECT_EQ(insertLayerMaterial(metal), insert);
}

TEST(FaceRules, ASurfaceNumberBeyondTheListWaitsForOneKey) {
  std::stringstream out, in("xyz");
  const auto marks =
      markContactSurfaces({{2, 0, 0, {}}, {4, 0, 0, {}}, {0, 1, 1, {}}, {3, 0, 0, {}}}, 3, out, in);
  EXPECT_EQ(out.str(), "2SurID=4\n");
  EXPECT_EQ(in.get(), 'y');
  EXPECT_EQ((std::vector<int>{marks[1], marks[2], marks[3]}), (std::vector<int>{0, 1, 1}));
}

TEST(BoundaryCodes, OnlyTheExactCodeMatches) {
  for (const char* unknown : {"em", "E", "EMX", "", "??", "ME"})
    EXPECT_EQ(boundaryType(kBoundaryCodes, unknown, 77), 77) << unknown;
  const char* const codes[] = {"EM", "EC", "OM", "PR", "MW", "SM"};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(boundaryType(kBoundaryCodes, codes[i], 77), i + 1);
    EXPECT_EQ(boundaryType(kChannelBoundaryCodes, codes[i], 77), i == 0 ? 2 : i == 1 ? 1 : i + 1);
  }
}

TEST(Inlets, SurfaceInletsShareTheNumberOfTheLastLayoutInlet) {
  EXPECT_EQ(numberInlets({{0, 0}, {1, 1}, {}}), (std::vector<std::int32_t>{0, 1, 2, 2, 3}));
  EXPECT_EQ(numberInlets({{1, 0, 1}, {0, 1}, {}}), (std::vector<std::int32_t>{0, 2, 4, 0, 0, 0}));
  EXPECT_EQ(numberInlets({{}, {1}, {}}), (std::vector<std::int32_t>{0, 0}));
}

using Groups = Transfers;

// The highest group of inlet faces; tags beyond 1..999 leave it to the boundary type.
TEST_F(Groups, HighestChannelGroup) {
  const struct {
    int interfaceId, contactCode, boundaryType, group, highest;
  } rows[] = {{4, 1, 3, 999, 999}, {4, 1, 3, 1000, 3}, {4, 1, 3, 0, 3}, {4, 1, 3, 1, 1},
              {4, 0, 3, 9, 0},     {4, 2, 3, 9, 0},    {3, 1, 3, 9, 0}};
  auto source = nlohmann::json::parse(R"({"header": {"fields": {"0": 14001}},
    "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0]]})");
  for (const auto& row : rows) {
    source["elementSurfaces"] = {{{"nodes", {1, 2, 3, 3}},
                                  {"interfaceId", row.interfaceId},
                                  {"contactCode", row.contactCode},
                                  {"boundaryType", row.boundaryType},
                                  {"tag", row.group << 8}}};
    EXPECT_EQ(transferred("channels", source)["header"]["fields"].value("73", 0), row.highest) << row.group;
  }
}

using NodeTyping = Transfers;

// Elements in the order part, insert 5002, insert 9999, mold, heater; a node of each combination.
TEST_F(NodeTyping, EveryMeeting) {
  auto source = nlohmann::json::parse(R"({"header": {"fields": {"0": 14001, "18": 1}},
    "elementsPlastic": [{"nodes": [1, 2, 3, 4]}],
    "elementsMoldBase": [{"nodes": [1, 2, 5, 6], "a": 5002}, {"nodes": [1, 5, 7, 8], "a": 9999},
                         {"nodes": [3, 6, 9, 10], "a": 1}],
    "elementsCoolChannel": [{"nodes": [4, 9, 7, 11], "a": 2, "b": 1}]})");
  for (int n = 0; n < 12; ++n) source["nodes"].push_back({n, n * n, n * n * n});
  transferred("part-inserts-channels", source);
  std::vector<int> types(13);
  transfer.GetPIGloalNodeType(types.data());
  EXPECT_EQ(types, (std::vector<int>{0, 5, 5, 4, 8, 3, 3, 10, 3, 10, 2, 8, 0}));
}

TEST_F(NodeTyping, MaterialsOfTheJoinedPart) {
  const std::int32_t plastic[2] = {7, 8};
  const std::int32_t moldBase[6] = {5000, 5001, 9999, 10000, 1, 5002};
  MeshModel model;
  model.elemP.fieldA = plastic;
  model.elemM.fieldA = moldBase;
  const auto materials = joinedElementMaterials(model, 3);
  EXPECT_EQ(std::vector<int>(materials.data(), materials.data() + 6),
            (std::vector<int>{0, 1, 1, 5001, 9999, 5002}));
}

// A line each for the blocks of a file that have entries, in the order of their bytes.
std::string blocksOf(const std::string& path) {
  embedded::BlockReader reader;
  EXPECT_TRUE(reader.open(path));
  std::string names;
  for (const auto& block : reader.blocks())
    for (const auto& layout : embedded::allLayouts())
      if (layout.id == block.record.id && layout.block != embedded::Block::Header && !block.columns.empty())
        names += std::string(layout.name) + "\n";
  return names;
}

using BlockOrder = Transfers;

// What reaches the information dump, and what the file.
TEST_F(BlockOrder, IsThatOfTheVariant) {
  const std::string source = writeOfe(dir, mold().dump());
  std::string orders;
  for (const Variant* const variant : allVariants()) {
    std::stringstream console;
    COrvSolverMeshWriter worker(console, console);
    ASSERT_EQ(worker.ReadDataBin(source.c_str(), "log", 0, false), 1);
    std::ofstream("log").close();
    EXPECT_EQ(writeVariant(*variant, worker, "target.ofe"), 1);
    runVariant(transfer, variant->name, source, "target.ofe");  // with all passes before it
    const std::regex heading("\n///\n(/// .*\n)///\n");
    orders += std::string(variant->name) + "\n" + std::regex_replace(bytesOf("log"), heading, "$1");
    orders += blocksOf("target.ofe");
  }
  EXPECT_EQ(orders, testData("transfer/data/block_order.txt"));
}

}  // namespace
