#include <gtest/gtest.h>

#include <sstream>

#include "check/report.h"
#include "check/variants.h"
#include "platform/ofeio.h"
#include "support/everything.h"
#include "support/failure_of.h"
#include "support/json_mesh.h"

namespace {

using namespace orvmesh;
using nlohmann::json;

check::Report checked(const json& mesh, std::optional<std::size_t> variant = std::nullopt) {
  const test::TempDir dir;
  return check::checkFile(test::writeOfe(dir, mesh.dump()), variant);
}

// "code xCOUNT: kind number" of each finding.
std::string summary(const check::Report& report) {
  std::string text;
  for (const auto& finding : report.findings) {
    text += (text.empty() ? "" : "; ") + std::string(check::ruleOf(finding.code).name) + " x" +
            std::to_string(finding.count);
    if (!finding.entities.empty())
      text += ": " + std::string(finding.entities[0].kind) + ' ' + std::to_string(finding.entities[0].number);
  }
  return text;
}

// Three unit cubes in a row along x, each a hexahedron: part, mold base, coolant channel of group 1 (its end
// faces the ones at y = 0 and y = 1). All surfaces as `orvmesh import` derives them; nothing is wrong with
// it.
//
//   z  13--14--15--16     nodes 1..8 at y = 0, 9..16 at y = 1
//   |  5---6---7---8
//   |   part|mold|channel
//   +x 1---2---3---4
json smallMold() { return json::parse(test::testData("check/data/small_mold.json")); }

// A fault planted in the sound mold, and all that is found then. Changes are a sign, a place and a value: =
// replaces, + adds, - removes what stands there.
struct Fault {
  const char* changes;
  const char* found;
  bool isSound = false;
};

const Fault kFaults[] = {
    {"", "", true},
    {"= /boundaryConditions/0/entityNo 17", "index-out-of-range x1: boundary condition 1"},
    {"+ /badElementsMoldBase/- [2,0]", "index-out-of-range x1: bad mold element 2"},
    {"= /elementsMoldBase/0/nodes [6,7,15,14,2,3,11,10]", "inverted-element x1: mold element 1"},
    {R"(+ /elementsPlastic/- {"nodes":[1,2,9,10],"a":1,"b":1})", "zero-volume-element x1: plastic element 2"},
    {R"(+ /elementsMoldBase/- {"nodes":[2,10,9,1,6,14,13,5],"a":1})", "duplicate-element x1: mold element 2"},
    {R"(+ /nodes/- [0.5,0.5,0.5]; + /elementsPlastic/- {"nodes":[2,6,14,10,17],"a":1,"b":1})",
     "crowded-face x1: face 0"},
    {"= /elementSurfaces/0/nodes [1,2,14,13]", "surface-off-mesh x1: surface element 1"},
    {"= /elementSurfaces/3/interfaceId 1", "surface-not-of-owner x1: surface element 4"},
    {"= /elementSurfaces/4/elementNo 2147483647", "surface-not-of-owner x1: surface element 5"},
    {"= /elementSurfaces/2/elementNo 0", "surface-without-owner x1: surface element 3"},
    {"- /elementSurfaces/9", "open-channel x4: surface element 6"},
    {"= /elementSurfaces/6/contactCode 1", "channel-ends x1: channel group 1"},
    {"+ /elementSurfaces/6/tag 512", "channel-ends x1: channel group 1"},
    {"= /elementsPlastic/0/a 0", "unknown-material x1: plastic element 1"},
    {"= /elementsMoldBase/0/a 5001; - /moldMetalLayers", "unknown-material x1: mold element 1"},
    {"= /elementsCoolChannel/0/a 3; - /coolantChannelLayers", "unknown-material x1: channel element 1"},
    {"+ /header/fields/4 2", "header-count x1: header field 4"},
    {"+ /header/fields/123 -1", "header-count x1: header field 123"},
    {R"(+ /moldMetalLayers/- [5002,2,"",0,0,0,0])", "empty-component x1: mold metal layer 2"},
    {"- /elementsCoolChannel", "empty-component x2: channel 0"},
    {"+ /nodes/- [5,5,5]", "unused-node x1: node 17"},
    // A tetrahedron on a node of its own where node 3 is, in the mold and in the part.
    {R"(+ /nodes/- [2,0,1e-6]; + /elementsMoldBase/- {"nodes":[17,11,10,15],"a":1,"b":1})",
     "coincident-nodes x1: node 17"},
    {R"(+ /nodes/- [2,0,1e-6]; + /elementsPlastic/- {"nodes":[17,11,10,15],"a":1,"b":1})",
     "separate-nodes x1: node 17", true},
    // A hose stands for an end, and so does group 2, which has elements of its own.
    {"= /elementSurfaces/6/contactCode 0", "", true},
    {R"(= /elementSurfaces/6/boundaryType 2; + /elementsCoolChannel/- {"nodes":[3,4,11,7],"a":1,"b":2})", "",
     true},
    // Outside the component, on another thing of it, numbers of nothing.
    {"= /sensors/0/position [1.2,0.5,0.5]", "sensor-outside x1: part element sensor 1"},
    {"= /sensors/0/ids [-2147483648,0,0,0]", "sensor-outside x1: part element sensor 1"},
    {"= /sensors/1/ids [3,0,0,0]", "sensor-outside x1: part node sensor 1"},
    {"= /sensors/1/position [0.2,0.2,2]", "sensor-outside x1: part node sensor 1"},
    {"= /sensors/2/ids [1,3,0,0]", "sensor-outside x1: surface sensor 1"},
    {"= /sensors/3/ids [2,0,0,0]", "sensor-outside x1: mold element sensor 1"},
    {"= /sensors/4/ids [1,0,0,0]", "sensor-outside x1: mold node sensor 1"},
    {"= /sensors/5/ids [16,0,0,0]", "sensor-outside x1: sensor of kind 6 1"},
};

json changed(json mesh, const std::string& changes) {
  std::istringstream list(changes);
  for (std::string change; std::getline(list, change, ';');) {
    std::istringstream words(change);
    std::string sign, path, value;
    words >> sign >> path;
    std::getline(words, value);
    json step{{"op", sign == "=" ? "replace" : sign == "+" ? "add" : "remove"}, {"path", path}};
    if (!value.empty()) step["value"] = json::parse(value);
    mesh.patch_inplace(json::array({step}));
  }
  return mesh;
}

TEST(Findings, OneForEachPlantedFault) {
  for (const Fault& fault : kFaults) {
    const auto report = checked(changed(smallMold(), fault.changes));
    EXPECT_EQ(summary(report), fault.found) << fault.changes;
    EXPECT_EQ(report.isSound(), fault.isSound) << fault.changes;
  }
}

TEST(Findings, ManyAreCountedAndTheFirstAreShown) {
  auto mold = smallMold();
  for (int i = 0; i < 100; ++i) mold["nodes"].push_back({i, -5, 0.5});
  const auto report = checked(mold);
  ASSERT_EQ(report.findings.size(), 1U);
  EXPECT_EQ(report.findings[0].count, 100U);
  EXPECT_EQ(report.findings[0].entities.size(), check::Collector::kShown);
  EXPECT_EQ(report.findings[0].entities[4].position, (std::array<double, 3>{4, -5, 0.5}));
}

TEST(Findings, AbsentComponentsAreNotes) {
  const json part = {{"nodes", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                     {"elementsPlastic", {{{"nodes", {1, 2, 3, 4}}, {"a", 1}, {"b", 1}}}}};
  EXPECT_EQ(summary(checked(part)), "absent-component x2: mold 0");
  EXPECT_EQ(summary(checked(part, check::variantAt("stream-line"))), "");
  EXPECT_EQ(summary(checked({{"nodes", json::array()}})),
            "empty-component x1: whole mesh 0; absent-component x3: plastic 0");
}

TEST(Variants, DocumentedPropertiesAreNotes) {
  auto mold = smallMold();
  mold["nodes"].push_back({5, 5, 5});
  auto report = checked(mold);
  EXPECT_EQ(report.explainedBy.size(), check::variantNames().size());
  for (std::size_t v = 0; v < check::variantNames().size(); ++v) EXPECT_TRUE(checked(mold, v).isSound());

  mold.erase("elementsCoolChannel");
  report = checked(mold);
  EXPECT_EQ(report.explainedBy, std::vector<std::string>{"moldbase"});
  EXPECT_FALSE(checked(mold, check::variantAt("stream-line")).isSound());
  report = checked(mold, check::variantAt("moldbase"));
  EXPECT_TRUE(report.isSound());
  EXPECT_FALSE(report.findings[0].reason.empty());

  mold["elementsPlastic"][0]["a"] = 0;
  EXPECT_TRUE(checked(mold).explainedBy.empty());
}

// Whatever a file holds that can be written, the check comes to an end and says something.
TEST(Findings, AnyNumberAnywhereIsChecked) {
  const test::TempDir dir;
  const std::string path = dir / "mesh.ofe";
  const json everything = json::parse(test::kEverything);
  const json flat = everything.flatten();
  int tried = 0;
  for (const auto& [place, value] : flat.items()) {
    if (!value.is_number_integer()) continue;
    for (const std::int64_t other : {std::int64_t{-2147483648}, std::int64_t{2147483647}}) {
      json mesh = everything;
      mesh[json::json_pointer(place)] = other;
      if (test::failureOf([&] { view::loadJson(mesh.dump(), "mesh", path); }) != "no failure") continue;
      ++tried;
      EXPECT_FALSE(check::checkFile(path, std::nullopt).findings.empty()) << place << ' ' << other;
    }
  }
  EXPECT_GT(tried, 150);
}

// Files that no JSON makes: the reader refuses them.
class Refused : public ::testing::Test {
 protected:
  using Write = void (*)(OFEIO_Manipulator& file);
  check::Report checkedFile(Write write) {
    OFEIO_Manipulator file;
    EXPECT_EQ(file.beginWriting(path_.c_str(), 14001, 0), 1);
    for (int n = 0; n < 4; ++n)
      file.writeNodeBlockEntry(static_cast<float>(n == 1), static_cast<float>(n == 2),
                               static_cast<float>(n == 3));
    write(file);
    EXPECT_EQ(file.endWriting(), 1);
    return check::checkFile(path_, std::nullopt);
  }
  test::TempDir dir_;
  std::string path_ = dir_ / "mesh.ofe";
};

TEST_F(Refused, ValuesAreFindings) {
  static const int kNodes[] = {1, 2, 3, 4, 1, 2, 3}, kForeign[] = {1, 2, 3, 5};
  const std::pair<Write, const char*> cases[] = {
      {[](auto& file) { file.writeElementPlasticBlockEntry(4, kForeign, 1, 1, 0); }, "index-out-of-range"},
      {[](auto& file) { file.writeElementCoolChannelBlockEntry(4, kNodes, 1, 1001, 0); },
       "index-out-of-range"},
      {[](auto& file) { file.writeElementMoldBaseBlockEntry(4, kNodes, 11901, 1, 0); }, "unknown-material"},
      {[](auto& file) { file.writeCoolantChannelLineBlockEntry(0, 0, 0, 1, 0, 0, 0, 0); }, "illegal-value"}};
  for (const auto& [write, code] : cases) {
    const auto report = checkedFile(write);
    ASSERT_EQ(report.findings.size(), 1U) << code;
    EXPECT_TRUE(report.refused);
    EXPECT_STREQ(check::ruleOf(report.findings[0].code).name, code);
    EXPECT_NE(report.findings[0].entities[0].detail.find("legal"), std::string::npos) << code;
  }
  const auto report = checkedFile([](auto& file) {  // elements of no shape are read
    for (const int count : {1, 2, 3, 7}) file.writeElementPlasticBlockEntry(count, kNodes, 1, 1, 0);
    file[m_HEADER_NElemP] = file[m_HEADER_NNode] = 4;
    file[m_HEADER_NMatP] = 1;
  });
  EXPECT_EQ(summary(report), "zero-volume-element x4: plastic element 1; absent-component x2: mold 0");
}

}  // namespace
