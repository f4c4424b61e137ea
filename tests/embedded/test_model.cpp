#include <limits>
#include <tuple>

#include "embedded/all_blocks.h"
#include "embedded/mesh.h"

namespace orvmesh::test {
namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const int kNodes[8] = {1, 2, 3, 4, 5, 0, 0, 0};

void writeLayout(OFEIO_Manipulator& f, int endA, int endB, float diameter, float last) {
  f.writeCoolantChannelLayoutBlockEntry(1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  f.writeCoolantChannelLayoutBlockEntry(1, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  f.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, endA, endB, diameter, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                        last);
}
void writeName(OFEIO_Manipulator& f, const char* key, const char* value) {
  OFEIO_Dictionary dictionary;
  dictionary.AddEntry(key, value);
  f.writeSurfaceElementBoundaryConditionNameBlockEntry("n", 7, &dictionary);
}

struct Case {
  std::function<void(Mesh&)> change;
  const char* refusal;
};

// clang-format off
const Case kViolations[] = {
    {[](Mesh& m) { m.scale = kNaN; }, "header field 29, the scale factor, is nan (legal: a finite number)"},
    {[](Mesh& m) { m.plastic[0].nodes[3] = 0; }, "elementsPlastic entry 1: node 4 is 0 (legal: 1 to 5)"},
    {[](Mesh& m) { m.mold[1].nodes = {1, 2, 3, 4, 6}; }, "elementsMoldBase entry 2: node 5 is 6 (legal: 1 to 5)"},
    {[](Mesh& m) { m.channel[0].nodes[0] = -2147483647 - 1; },
     "elementsCoolChannel entry 1: node 1 is -2147483648 (legal: 1 to 5)"},
    {[](Mesh& m) { m.nodes.clear(); }, "elementsPlastic entry 1: node 1 is 1 (legal: 1 to 0)"},
    {[](Mesh& m) { m.mold[1].a = 11901; }, "elementsMoldBase entry 2: material is 11901 (legal: at most 11900)"},
    {[](Mesh& m) { m.channel[0].b = 1001; }, "elementsCoolChannel entry 1: group is 1001 (legal: 0 to 1000)"},
    {[](Mesh& m) { m.channel[0].b = -1; }, "elementsCoolChannel entry 1: group is -1 (legal: 0 to 1000)"},
    {[](Mesh& m) { m.surfaces[1].nodes[2] = 0; }, "elementSurfaces entry 2: node 3 is 0 (legal: 1 to 5)"},
    {[](Mesh& m) { m.surfaces[0].nodes[3] = 6; }, "elementSurfaces entry 1: node 4 is 6 (legal: 0 to 5)"},
    {[](Mesh& m) { m.more = [](auto& f) { const int n[8] = {1, 0, 6}; f.writeCoolantChannelDiameterBlockEntry(n, 1); }; },
     "coolantChannelDiameters entry 1: node 2 is 0 (legal: 1 to 5)"},
    {[](Mesh& m) { m.more = [](auto& f) { f.writeCoolantChannelLineBlockEntry(0, 0, 0, 0, 0, 0, 0, 0); }; },
     "coolantChannelLines has 1 entries (legal: an even number, two ends for each line)"},
    {[](Mesh& m) { m.more = [](auto& f) { writeLayout(f, 0, 1, 8, 0); }; },
     "coolantChannelLayout entry 3: end point A is 0 (legal: 1 to 2)"},
    {[](Mesh& m) { m.more = [](auto& f) { writeLayout(f, 1, 2, 3e5F, 0); }; },
     "coolantChannelLayout entry 3: value 8 is 3e+05 (legal: -214748 to 214748 in model units)"},
    {[](Mesh& m) { m.more = [](auto& f) { f.writeSensorInfoBlockEntry(7, kNodes, 0, 0, 0); }; },
     "sensors entry 1: type is 7 (legal: 1 to 6)"},
    {[](Mesh& m) { m.more = [](auto& f) { const int n[4] = {1, 2, 6, 0}; f.writeMoldMetalBlockEntry(0, 0, 0, 0, n, 0, 0); }; },
     "moldMetal entry 1: node 3 is 6 (legal: 1 to 5)"},
    {[](Mesh& m) { m.more = [](auto& f) { const int n[4] = {}; f.writeCoolingChannelSurfaceEntry(0, 0, 0, 0, n, 0, 0); }; },
     "coolingChannelSurface entry 1: node 1 is 0 (legal: 1 to 5)"},
    {[](Mesh& m) { m.more = [](auto& f) { f.writeSurfaceElementBoundaryConditionBlockEntry(3, 1, kNodes); }; },
     "surfaceBoundaryConditions entry 1: surfaceNo is 3 (legal: 1 to 2)"},
    {[](Mesh& m) { m.more = [](auto& f) { for (int i = 0; i < 2; ++i) f.writeSurfaceElementBoundaryConditionBlockEntry(2, 1, kNodes); }; },
     "surfaceBoundaryConditions entry 2: surfaceNo is 2 (legal: each surface once, entry 1 has it)"},
    {[](Mesh& m) { m.more = [](auto& f) { writeName(f, "THICKNESS", "2,5"); }; },
     "surfaceBoundaryConditionNames entry 1: THICKNESS is \"2,5\" (legal: a finite number)"},
    {[](Mesh& m) { m.scale = 1e30F; m.more = [](auto& f) { writeName(f, "THICKNESS", "1e300"); }; },
     "surfaceBoundaryConditionNames entry 1: THICKNESS is \"1e300\" (legal: a finite number)"},
    {[](Mesh& m) { m.more = [](auto& f) { writeName(f, "BRANCH_NUMBER", "2147483648"); }; },
     "surfaceBoundaryConditionNames entry 1: BRANCH_NUMBER is \"2147483648\" (legal: an integer of 32 bits)"},
    {[](Mesh& m) { m.more = [](auto& f) { f.writePartingDirectionBlockEntry(0, 0, 1); f.writePartingDirectionBlockEntry(0, 0, 1); }; },
     "partingDirection has 2 entries (legal: 0 or 1)"}};
// clang-format on

TEST(Model, TheFirstViolationIsNamed) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe";
  const std::string log = dir / "log";
  for (const Case& c : kViolations) {
    Mesh mesh = twoTetrahedra();
    c.change(mesh);
    ASSERT_EQ(mesh.write(path), 1);
    EXPECT_EQ(refusalOf(path), c.refusal);
    COFEData data;
    EXPECT_EQ(data.ReadDataBin(path.c_str(), log.c_str(), 0, false), 0);
    EXPECT_EQ(bytesOf(log), path + ": " + c.refusal + "\n");
  }
}

TEST(Model, ForeignElementNumbersAreAWarning) {
  const TempDir dir;
  Mesh mesh = twoTetrahedra();
  mesh.surfaces[1].elementNo = 3;
  mesh.surfaces.push_back(mesh.surfaces[1]);
  mesh.more = [](auto& f) {
    f.writeBoundaryConditionBlockEntry(99, 1, 0);
    f.writeBadElementMoldBaseBlockEntry(2, 0);
    f.writeBadElementMoldBaseBlockEntry(0, 0);
    writeName(f, "OTHER", "any text");
  };
  ASSERT_EQ(mesh.write(dir / "mesh.ofe"), 1);
  COFEData data;
  ASSERT_EQ(data.ReadDataBin((dir / "mesh.ofe").c_str(), nullptr, 0, false), 1) << data.errorText();
  EXPECT_EQ(data.warnings(),
            (std::vector<std::string>{"elementSurfaces: 2 entries name an element outside their "
                                      "list (the first is entry 2, element 3)",
                                      "badElementsMoldBase: 1 entries name an element outside their "
                                      "list (the first is entry 2, element 0)"}));
}

// What comes back in a mesh that the model is written to shows there; this is what does not.
TEST(Model, HoldsTheFileInModelUnits) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe";
  ASSERT_EQ(writeAllBlocks(path), 1);  // scale factor 0.5
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(path.c_str(), nullptr, 0, false), 1) << data.errorText();
  const MeshModel& m = data.model();
  EXPECT_EQ(std::tuple(m.formatVersion, m.lengthFactor, m.hasPartingDirection), std::tuple(1000, 0.5, true));
  EXPECT_EQ(m.blockToMaterial, (std::vector<std::int32_t>{7, 9, 5001}));
  EXPECT_EQ(std::tuple(m.elemM[2].nodeCount(), m.elemM[3].nodes[4], m.diameters[0].nodeCount),
            std::tuple(8, 5, 7));
  const auto &triangle = m.surfaces[1], &quadrangle = m.surfaces[2];
  EXPECT_EQ(std::tuple(triangle.nodeCount, triangle.nodes[3], quadrangle.nodeCount), std::tuple(3, 0, 4));
  EXPECT_TRUE(m.surfaces.hasList(1) && m.surfaces.list(1).empty());
  EXPECT_STREQ(m.conditions[2].code, "??");
  EXPECT_STREQ(m.moldMetalLayers[0].name.c_str(), "steel");
  const double beam = m.beamPoints[1].z, sensor = m.sensors[5][0].y, insert = m.moldInsert.points[0].z,
               thickness = m.bcValues[static_cast<std::size_t>(m.bcNames[0].valueIndex)];
  EXPECT_EQ(std::tuple(m.nodes[9].z, m.diameters[0].diameter, beam, sensor, insert, thickness),
            std::tuple(-0.75, 4.25, 2.5, 1.25, 1.5, 1.25));
  EXPECT_EQ(m.lines[0].ends[1].values[3], 6);
  EXPECT_EQ(m.beamSegments[0].segValue, 46250);  // half of 9.25, times 10000
  const std::vector<std::int32_t> a(m.beamSegments[0].values, m.beamSegments[0].values + 13);
  EXPECT_EQ(a, (std::vector<std::int32_t>{40000, 1, 2, 11, 12, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 0}));
}

TEST(Model, LogIsStartedAnewAndNeverTheMesh) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe";
  const std::string log = dir / "log";
  ASSERT_EQ(twoTetrahedra().write(path), 1);
  const std::string before = bytesOf(path);
  writeBytes(log, "old text");
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(path.c_str(), log.c_str(), 0, false), 1);
  data.DumpInfoMsg("\n///\n");
  EXPECT_EQ(bytesOf(log),
            path + ": 5 nodes, 1 plastic, 2 mold and 1 channel elements, 2 surface elements\n\n///\n");
  for (const std::string& bad : {path, dir.path(), dir / "none/log", std::string()}) {
    ASSERT_EQ(data.ReadDataBin(path.c_str(), bad.c_str(), 0, false), 1);
    data.DumpErrMsg("lost");
  }
  EXPECT_EQ(bytesOf(path), before);
}

}  // namespace
}  // namespace orvmesh::test
