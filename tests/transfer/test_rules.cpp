#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "embedded/block_reader.h"
#include "embedded/ofe_layout.h"
#include "support/files.h"
#include "transfer/blocks/layers.h"
#include "transfer/ctg_elements.h"
#include "transfer/mold.h"
#include "transfer/prepass/groups.h"
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

TEST(ElementRules, MaterialsAtTheEdgesOfTheRanges) {
  // Material of a mold element; material in the mold-base mesh; block in the joined mesh; typed as an insert.
  const struct {
    int material, moldBase;
    const char* joined;
    bool typed;
  } rows[] = {{1, 1, "M", false},        {2, 5002, "M", false},      {4999, 9999, "M", false},
              {5000, 10000, "M", false}, {5001, 5001, "M", true},    {5002, 5002, "P", true},
              {9999, 9999, "P", true},   {10000, 10000, "P", false}, {10001, 10001, "P", false},
              {10002, 6002, "M", false}, {10899, 6899, "M", false},  {10900, 10900, "M", false},
              {10901, 6901, "M", false}, {11900, 7900, "M", false},  {0, 0, "M", false},
              {-3, -3, "M", false}};
  const TempDir dir;
  for (const auto& row : rows) {
    const std::string source =
        writeOfe(dir, R"({"format":"ofe-json","version":1,"header":{"fields":{"0":14001,"18":1}},
      "nodes":[[0,0,0],[1,0,0],[0,1,0],[0,0,1]],
      "elementsMoldBase":[{"nodes":[1,2,3,4],"a":)" +
                          std::to_string(row.material) + R"(,"b":5,"value":0}]})");
    const std::string target = dir / "target.ofe";
    COrvMeshFormatTransfer transfer;
    runVariant(transfer, "moldbase", source, target);
    EXPECT_EQ(elementLines(readOfe(target), "elementsPlastic"),
              Lines{"1 2 3 4 | 1 " + std::to_string(row.moldBase)});
    runVariant(transfer, "part-inserts", source, target);
    const auto joined = readOfe(target);
    EXPECT_EQ(elementLines(joined, "elementsPlastic").size(), row.joined[0] == 'P' ? 1U : 0U) << row.material;
    EXPECT_EQ(elementLines(joined, "elementsMoldBase").size(), row.joined[0] == 'M' ? 1U : 0U)
        << row.material;
    int types[5] = {};
    transfer.GetPIGloalNodeType(types);
    EXPECT_EQ(types[1], row.typed ? NodeType_PartInsert : NodeType_Mold) << row.material;
  }
}

TEST(FaceRules, NodesAreCompletedFromTheOneBefore) {
  const struct {
    int stored[4], written[4];
  } rows[] = {{{7, 8, 9, 0}, {7, 8, 9, 9}},
              {{7, 8, 0, 0}, {7, 8, 8, 8}},
              {{7, 0, 9, 0}, {7, 7, 9, 9}},
              {{7, 8, 9, 6}, {7, 8, 9, 6}}};
  for (const auto& row : rows) {
    SurfaceElement face{};
    std::copy_n(row.stored, 4, face.nodes);
    const Face written = asStored(face);
    EXPECT_TRUE(std::equal(row.written, row.written + 4, written.nodes));
  }
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
  struct Row {
    int type;
    std::uint32_t tag;
    bool kept;
    int writtenType;
    std::uint32_t writtenTag;
  };
  for (const Row& row :
       {Row{0, 1, false, 0, 0}, Row{1, 6, true, 1, 6}, Row{1, 0x507, true, 1, 0x507}, Row{-1, 1, false, 0, 0},
        Row{14, 1, false, 0, 0}, Row{3, 1, false, 0, 0}, Row{7, 2, false, 0, 0}, Row{12, 4, false, 0, 0},
        Row{13, 0, true, 0, 1}, Row{2, 9, true, 0, 1}, Row{5, 0, false, 0, 0},
        Row{4, 0x203, false, 0, 0},  // a common gate without a number is dropped
        Row{4, 0x205, false, 0, 0}, Row{4, 0x201, true, 0, 1}, Row{4, 0x202, true, 0, 1},
        Row{4, 0x204, true, 0, 1}, Row{14, 0x206, true, 7, 0x0FFFFF06},  // any other is written all the same
        Row{-1, 0x206, true, 7, 0x0FFFFF06}}) {
    SurfaceElement face{3, 1, 0, 0, row.type, 0, {1, 2, 3, 0}, row.tag};
    FaceCarry carry;
    const auto written = hotRunnerFace(face, worker, carry);
    ASSERT_EQ(written.has_value(), row.kept) << row.type << " " << row.tag;
    if (!written) continue;
    EXPECT_EQ(written->boundaryType, row.writtenType) << row.type << " " << row.tag;
    EXPECT_EQ(written->tag, row.writtenTag) << row.type << " " << row.tag;
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

// The highest group of inlet faces; tags beyond 1..999 leave it to the boundary type.
TEST(Groups, HighestChannelGroup) {
  const struct {
    int interfaceId, contactCode, boundaryType;
    std::uint32_t group;
    int highest;
  } rows[] = {{4, 1, 3, 999, 999}, {4, 1, 3, 1000, 3}, {4, 1, 3, 0, 3}, {4, 1, 3, 1, 1},
              {4, 0, 3, 9, 0},     {4, 2, 3, 9, 0},    {3, 1, 3, 9, 0}};
  for (const auto& row : rows) {
    const std::int32_t nodes[4] = {1, 2, 3, 3};
    const std::int32_t none = 0;
    const auto tag = static_cast<std::int32_t>(row.group << 8);
    SurfaceTable table;
    table.nodes = nodes;
    table.interfaceId = {&row.interfaceId, 1};
    table.contactCode = {&row.contactCode, 1};
    table.boundaryType = {&row.boundaryType, 1};
    table.ownerCode = table.elementNo = {&none, 1};
    table.tag = {&tag, 1};
    EXPECT_EQ(highestChannelGroup(table), row.highest) << row.group;
  }
}

// Elements in the order part, insert 5002, insert 9999, mold, heater; a node of each combination.
TEST(NodeTyping, EveryMeeting) {
  const Elements part({{1, 2, 3, 4}}), mold({{1, 2, 5, 6}, {1, 5, 7, 8}, {3, 6, 9, 10}}),
      heater({{4, 9, 7, 11}});
  const std::int32_t moldMaterials[] = {5002, 9999, 1};
  const std::int32_t kind = kChannelKindHeater;
  const std::vector<float> zeros(36);
  MeshModel model;
  model.nodes = {zeros, 1};
  model.elemP = part.table();
  model.elemM = mold.table();
  model.elemM.fieldA = moldMaterials;
  model.elemC = heater.table();
  model.elemC.fieldA = {&kind, 1};
  const NodeTyping typing = typeNodes(model);
  EXPECT_EQ(std::vector<int>(typing.type.data() + 1, typing.type.data() + 13),
            (std::vector<int>{5, 5, 4, 8, 3, 3, 10, 3, 10, 2, 8, 0}));
  EXPECT_EQ(typing.insertElements, 2);
}

TEST(NodeTyping, MaterialsOfTheJoinedPart) {
  const std::int32_t plastic[2] = {7, 8};
  const std::int32_t mold[6] = {5000, 5001, 9999, 10000, 1, 5002};
  MeshModel model;
  model.elemP.fieldA = plastic;
  model.elemM.fieldA = mold;
  const auto materials = joinedElementMaterials(model, 3);
  EXPECT_EQ(std::vector<int>(materials.data(), materials.data() + 6),
            (std::vector<int>{0, 1, 1, 5001, 9999, 5002}));
}

// Names of the blocks of a file that have entries, in the order of their bytes.
std::string blocksOf(const std::string& path) {
  embedded::BlockReader reader;
  EXPECT_TRUE(reader.open(path));
  std::string names;
  for (const auto& block : reader.blocks())
    for (const auto& layout : embedded::allLayouts())
      if (layout.id == block.record.id && layout.block != embedded::Block::Header && !block.columns.empty())
        names += std::string(layout.name) + ";";
  return names;
}

// What reaches the information dump and the file, in order: "heading=block;", either of which may be absent.
TEST(BlockOrder, IsThatOfTheVariant) {
  const std::string nodes = "Writing Node=nodes;", conditions = "Writing BC Bin=boundaryConditions;";
  const std::string announced = "Writing Binary OFE data=;" + nodes;
  const std::string joinedMesh =
      nodes +
      "Writing ElemP=elementsPlastic;Writing ElemM=elementsMoldBase;Writing ElemC=elementsCoolChannel;"
      "Writing ElemSurf PI=elementSurfaces;" +
      conditions + "Writing ElemCCL=coolantChannelDiameters;";
  const std::string joinedTables =
      "=badElementsMoldBase;=badElementsCoolChannel;Writing ElemCCLine=coolantChannelLines;"
      "Writing Sensor=sensors;Writing Mold Insert Data=moldMetal;"
      "Writing Beam Element CCL=coolantChannelLayout;"
      "Writing Surface Element Boundary Condition=surfaceBoundaryConditions;"
      "Writing Write Ofe SurfElem BC Name Bin=surfaceBoundaryConditionNames;"
      "Writing Mold Metal Layer=moldMetalLayers;Writing Part Insert Layer=partInsertLayers;"
      "Writing Coolant Channel Layer=coolantChannelLayers;"
      "Writing Cooling Channel Surface Bin Data=coolingChannelSurface;";
  const std::map<const Variant*, std::string> expected{
      {&kChannelOnly, announced + "Writing ElemCChannel=elementsPlastic;"
                                  "Writing Elem Surface CChannel=elementSurfaces;"
                                  "Writing BC CChannel=boundaryConditions;"},
      {&kHotRunnerOnly,
       announced + "Writing ElemP=elementsPlastic;Writing Elem Surface Hot runner=elementSurfaces;" +
           conditions +
           "Writing Surface Element Boundary Condition=surfaceBoundaryConditions;"
           "Writing Write Ofe SurfElem BC Name Bin=surfaceBoundaryConditionNames;=partingDirection;"},
      {&kStreamLine,
       announced + "Writing ElemP=elementsPlastic;Writing Elem Surface CChannel=elementSurfaces;"},
      {&kMoldBaseOnly,
       nodes +
           "WriteOfeElemPBin_OnlyMoldbase=elementsPlastic;Writing Elem Surface Moldbase=elementSurfaces;" +
           conditions +
           "Writing Sensor=sensors;Writing Beam Element CCL=coolantChannelLayout;"
           "Writing Mold Metal Layer=partInsertLayers;Writing Coolant Channel Layer=coolantChannelLayers;"},
      {&kPartInsert, joinedMesh + joinedTables},
      {&kPartInsertAndChannel, joinedMesh + "=badElementsPlastic;" + joinedTables}};
  const TempDir dir;
  const std::string source = writeOfe(dir, moldJson());
  for (const auto& [variant, steps] : expected) {
    std::stringstream console;
    COrvSolverMeshWriter worker(console, console);
    ASSERT_EQ(worker.ReadDataBin(source.c_str(), (dir / "log").c_str(), 0, false), 1);
    std::ofstream(dir / "log").close();
    EXPECT_EQ(writeVariant(*variant, worker, (dir / "target.ofe").c_str()), 1);
    COrvMeshFormatTransfer transfer;  // with all passes before it
    runVariant(transfer, variant->name, source, dir / "target.ofe");
    std::string headings, blocks;
    std::istringstream list(steps);
    for (std::string heading, block; std::getline(list, heading, '=') && std::getline(list, block, ';');) {
      if (!heading.empty()) headings += "\n///\n/// " + heading + "\n///\n";
      if (!block.empty()) blocks += block + ";";
    }
    EXPECT_EQ(bytesOf(dir / "log"), headings) << variant->name;
    EXPECT_EQ(blocksOf(dir / "target.ofe"), blocks) << variant->name;
  }
}

TEST(PartInserts, ContactsOfKindThreeAreSkipped) {
  const auto counts =
      countContacts({{1, 0, 0, {}}, {0, 3, 0, {}}, {0, 1, 5, {}}, {0, 2, 5, {}}, {2, 0, 0, {}}});
  EXPECT_EQ(counts.interior, 2);
  EXPECT_EQ(counts.other, 2);
}

}  // namespace
