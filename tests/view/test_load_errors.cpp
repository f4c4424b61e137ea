#include <gtest/gtest.h>

#include <fstream>

#include "support/everything.h"
#include "support/failure_of.h"
#include "support/temp_dir.h"
#include "view/ofe_json.h"
#include "view/text_io.h"

namespace {

using namespace orvmesh;
using test::failureOf;
using test::TempDir;

class LoadErrors : public ::testing::Test {
 protected:
  LoadErrors() { std::ofstream(target_) << "old"; }
  ~LoadErrors() override { EXPECT_EQ(view::readWholeFile(target_), "old"); }

  // The message without the text's name.
  std::string load(const std::string& text) {
    const auto message = failureOf([&] { view::loadJson(text, "t.json", target_); });
    EXPECT_EQ(message.rfind("t.json: ", 0), 0U) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    return message.substr(std::min<std::size_t>(message.size(), 8));
  }
  std::string loadWith(const std::string& block) {
    return load(R"({"nodes": [[0,0,0],[1,0,0],[0,1,0],[0,0,1]], )" + block + "}");
  }

  TempDir dir_;
  std::string target_ = dir_ / "target.ofe";
};

TEST_F(LoadErrors, NameThePlaceAndWhatIsLegal) {
  const std::pair<const char*, const char*> cases[] = {
      // Shape of the whole.
      {"[]", "top level: a list (legal: an object)"},
      {"{}", "nodes: missing (legal: a list of [x, y, z])"},
      {R"({"node": []})", "node: unknown key (nearest known: nodes)"},
      {R"({"nodes": 1})", "nodes: 1 (legal: a list of entries)"},
      {R"({"nodes": [], "nodes": []})", "nodes: given twice (legal: once)"},
      {R"({"format": "ofe", "nodes": []})", "format: \"ofe\" (legal: the text ofe-json)"},
      {R"({"version": 2, "nodes": []})", "version: 2 (legal: 1)"},
      // Rows.
      {R"({"nodes": [1]})", "nodes[0]: 1 (legal: a list of 3 values)"},
      {R"({"nodes": [[0,0,0],[0,0]]})", "nodes[1]: 2 values (legal: 3)"},
      {R"({"nodes": [[0,[],0]]})", "nodes[0][1]: a list (legal: a number)"},
      {R"({"nodes": [[0,0,1e39]]})", "nodes[0][2]: 1e39 (legal: -3.4028235e+38 to 3.4028235e+38)"},
      // Header.
      {R"({"header": {"Source": ""}, "nodes": []})", "header.Source: unknown key (nearest known: source)"},
      {R"({"header": {"fields": 1}, "nodes": []})", "header.fields: 1 (legal: an object)"},
      {R"({"header": {"fields": {"160": 1}}})",
       "header.fields.160: no field of the header (legal: 0 to 159)"},
      {R"({"header": {"fields": {"m_HEADER_NMat": 1}}})",
       "header.fields.m_HEADER_NMat: unknown key (nearest known: m_HEADER_NMatP)"},
      {R"({"header": {"fields": {"18": 1, "m_HEADER_NMatI": 1}}})",
       "header.fields.m_HEADER_NMatI: given twice (legal: once)"},
      {R"({"header": {"fields": {"28": 1.5}}})", "header.fields.28: 1.5 (legal: an integer)"},
      {R"({"header": {"fields": {"1": 2147483648}}})",
       "header.fields.1: 2147483648 (legal: -2147483648 to 2147483647)"},
  };
  for (const auto& [text, message] : cases) EXPECT_EQ(load(text), message) << text;
}

TEST_F(LoadErrors, OfEntries) {
  const std::pair<const char*, const char*> cases[] = {
      {R"("elementsPlastic": [[]])", "elementsPlastic[0]: a list (legal: an object)"},
      {R"("elementsPlastic": [{}])",
       "elementsPlastic[0].nodes: missing (legal: a list of 4, 5, 6 or 8 node numbers)"},
      {R"("elementsPlastic": [{"nodes": [1,2,3,9]}])", "elementsPlastic[0].nodes[3]: 9 (legal: 1 to 4)"},
      {R"("elementsPlastic": [{"nodes": [1,2,3]}])",
       "elementsPlastic[0].nodes: 3 values (legal: 4, 5, 6 or 8)"},
      {R"("elementsPlastic": [{"nodes": [1,2,3,4], "a": 99999999999999999999}])",
       "elementsPlastic[0].a: 99999999999999999999 (legal: -2147483648 to 2147483647)"},
      {R"("elementsMoldBase": [{"nodes": [1,2,3,4], "a": 11901}])",
       "elementsMoldBase[0].a: 11901 (legal: -2147483648 to 11900)"},
      {R"("elementsCoolChannel": [{"nodes": [1,2,3,4], "b": -1}])",
       "elementsCoolChannel[0].b: -1 (legal: 0 to 1000)"},
      {R"("sensors": [{"type": 7}])", "sensors[0].type: 7 (legal: 1 to 6)"},
      {R"("elementSurfaces": [{"nodes": [1,2,3,0]}, {"nodes": [1,2,0,3]}])",
       "elementSurfaces[1].nodes[2]: 0 (legal: 1 to 4)"},
      {R"("elementSurfaces": [{"nodes": [1,2,3,5]}])", "elementSurfaces[0].nodes[3]: 5 (legal: 0 to 4)"},
      {R"("elementSurfaces": [{"nodes": [1,2,3,3], "tag": 4294967296}])",
       "elementSurfaces[0].tag: 4294967296 (legal: -2147483648 to 4294967295)"},
      {R"("surfaceBoundaryConditions": [{"surfaceNo": 1}])",
       "surfaceBoundaryConditions[0].surfaceNo: 1 (legal: none, there is nothing to name)"},
      {R"("coolantChannelDiameters": [{"nodes": []}])",
       "coolantChannelDiameters[0].nodes: 0 values (legal: 1 to 8)"},
      {R"("coolantChannelLines": [[0,0,0,0,0,0,0,0]])",
       "coolantChannelLines: 1 entries (legal: an even number, two ends for each line)"},
      {R"("surfaceBoundaryConditionNames": [{"name": "a\u0000b"}])",
       "surfaceBoundaryConditionNames[0].name: \"a?b\" (legal: a text without the character U+0000)"},
      {R"("surfaceBoundaryConditionNames": [{"dictionary": {"A": "", "A": ""}}])",
       "surfaceBoundaryConditionNames[0].dictionary.A: given twice (legal: once)"},
      {R"("surfaceBoundaryConditionNames": [{"dictionary": {"THICKNESS": "inf"}}])",
       "surfaceBoundaryConditionNames[0].dictionary.THICKNESS: \"inf\" (legal: a text that is a finite "
       "number)"},
      {R"("surfaceBoundaryConditionNames": [{"dictionary": {"BRANCH_ID": "1.5"}}])",
       "surfaceBoundaryConditionNames[0].dictionary.BRANCH_ID: \"1.5\" "
       "(legal: a text that is an integer of 32 bits)"},
      {R"("elementSurfaces": [{"nodes": [1,2,3,3]}],
          "surfaceBoundaryConditions": [{"surfaceNo": 1}, {"surfaceNo": 1}])",
       "surfaceBoundaryConditions[1].surfaceNo: 1 for the second time (legal: each surface once)"},
      {R"("coolantChannelLayout": [[1,0,0,0,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0],
                                   [0,0,0,0,0,1,2,0,0,0,0,0,0,0,0,0,0,0,0,0]])",
       "coolantChannelLayout[1][6]: 2 (legal: 1 to 1)"},
      {R"("header": {"fields": {"29": 10}},
          "coolantChannelLayout": [[1,0,0,0,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0],
                                   [0,0,0,0,0,1,1,0,21474.84,0,0,0,0,0,0,0,0,0,0,0]])",
       "coolantChannelLayout[1][8]: 21474.84 (legal: -214748 to 214748 in model units)"},
      {R"("moldMetal": [{"isPoint": 1}, {"isPoint": 0, "nodes": [1,0,2,5]}])",
       "moldMetal[1].nodes[1]: 0 (legal: 1 to 4)"},
      {R"("moldMetalLayers": [[1, 2, 3, 0, 0, 0, 0]])", "moldMetalLayers[0][2]: 3 (legal: a text)"},
      {R"("partingDirection": [[0, 0, 1]])", "partingDirection[0]: a list (legal: a number)"},
  };
  for (const auto& [block, message] : cases) EXPECT_EQ(loadWith(block), message) << block;
}

TEST_F(LoadErrors, OfTheTextGiveLineAndColumn) {
  EXPECT_EQ(load("{\n  \"nodes\": [[0, NaN, 0]]}"),
            "no JSON: line 2, column 17: syntax error while parsing value - invalid literal (read: 0, N)");
  EXPECT_EQ(
      load(R"({"nodes": []} {)"),
      "no JSON: line 1, column 15: syntax error while parsing value - unexpected '{'; expected end of input "
      "(read: \"nodes\": []} {)");
  EXPECT_EQ(load("").substr(0, 25), "no JSON: line 1, column 1");
  EXPECT_NE(load("{\"nodes\": \"\xFF\"}").find("ill-formed UTF-8"), std::string::npos);
  EXPECT_EQ(load(std::string(1'000'000, '[')), "top level: a list (legal: an object)");
  EXPECT_EQ(load(R"({"nodes": )" + std::string(1'000'000, '[')), "nodes[0][0]: a list (legal: a number)");
}

TEST_F(LoadErrors, AnyTruncationIsRefused) {
  const std::string text = test::kEverything;
  for (std::size_t size = 0; size < text.size(); ++size) load(text.substr(0, size));
}

TEST_F(LoadErrors, OfFilesNameTheFile) {
  const std::string text = R"({"nodes": []})";
  const auto loadTo = [&](const std::string& target) {
    return failureOf([&] { view::loadJson(text, "t.json", target); });
  };
  EXPECT_EQ(loadTo(dir_.path()), dir_.path() + ": cannot be written: Is a directory");
  EXPECT_EQ(loadTo(dir_ / "no/a.ofe"),
            (dir_ / "no/a.ofe") + ": cannot be written: No such file or directory");
  const std::string missing = dir_ / "no.json";
  EXPECT_EQ(failureOf([&] { view::loadJsonFile(missing, target_); }),
            missing + ": cannot be read: No such file or directory");
}

}  // namespace
