#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <fstream>
#include <random>

#include "base/text_number.h"
#include "platform/ofeio.h"
#include "support/everything.h"
#include "support/failure_of.h"
#include "support/json_mesh.h"
#include "view/ofe_json.h"
#include "view/text_io.h"

namespace {

using nlohmann::json;
using namespace orvmesh;
using test::failureOf;
using test::TempDir;

TEST(OfeJson, DumpOfALoadedTextIsThatText) {
  const TempDir dir;
  const auto text = view::dumpJson(test::writeOfe(dir, test::kEverything));
  EXPECT_EQ(json::parse(text), json::parse(test::kEverything));
  // Parsed, numbers of equal value are equal; the sign of zero and the shortest form only show as text.
  for (const char* exact : {"\"30\": -0.0", "\"36\": 1e-45", "[-0.0, 1e-45, 16777216]", "\"value\": 0.1}"})
    EXPECT_NE(text.find(exact), std::string::npos) << exact;
  EXPECT_EQ(view::dumpJson(test::writeOfe(dir, text)), text);
}

// Any float that JSON can express, as the double that its shortest text reads as.
double anyFloat(std::mt19937& random) {
  float value = NAN;
  while (!std::isfinite(value)) value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
  std::string text;
  appendExact(text, value);
  return *parseNumber<double>(text);
}

json randomMesh(std::mt19937& random) {
  json mesh;
  const unsigned nodes = 1 + static_cast<unsigned>(random() % 100);
  for (unsigned i = 0; i < nodes; ++i)
    mesh["nodes"].push_back({anyFloat(random), anyFloat(random), anyFloat(random)});
  constexpr int kCounts[] = {4, 5, 6, 8};
  for (const char* block : {"elementsPlastic", "elementsMoldBase", "elementsCoolChannel"}) {
    mesh[block] = json::array();
    for (auto n = random() % 40; n > 0; --n) {
      json list;
      for (int i = kCounts[random() % 4]; i > 0; --i) list.push_back(1 + random() % nodes);
      mesh[block].push_back(
          {{"nodes", list}, {"a", random() % 11000}, {"b", random() % 1001}, {"value", anyFloat(random)}});
    }
  }
  mesh["moldMetalLayers"] = json::array();
  for (auto n = random() % 9; n > 0; --n)
    mesh["moldMetalLayers"].push_back({random() % 99, 1, std::string(random() % 9, 'x'), 0, 1, 2, -3});
  return mesh;
}

TEST(OfeJson, RandomMeshesComeBack) {
  const TempDir dir;
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    const json mesh = randomMesh(random);
    const json dumped = test::readOfe(test::writeOfe(dir, mesh.dump()));
    for (const auto& [key, block] : mesh.items()) EXPECT_EQ(dumped[key], block) << key << " in " << round;
  }
}

constexpr const char* kFourNodes = R"({"nodes": [[0,0,0],[1,0,0],[0,1,0],[0,0,1]], )";

TEST(OfeJson, WhatIsLeftOutIsZeroOrEmpty) {
  const TempDir dir;
  const auto empty = test::readOfe(test::writeOfe(dir, R"({"nodes": []})"));
  EXPECT_TRUE(empty["header"]["fields"].empty());
  EXPECT_EQ(empty["header"]["unit"], "");
  EXPECT_EQ(empty["elementSurfaces"], json::array());
  EXPECT_FALSE(empty.contains("partingDirection"));

  const auto sparse = test::readOfe(test::writeOfe(
      dir,
      std::string(kFourNodes) + R"("elementSurfaces": [{"nodes": [1, 2, 3, 3]}], "sensors": [{"type": 2}],
        "moldMetal": [{"isPoint": 1}], "surfaceBoundaryConditionNames": [{}]})"));
  EXPECT_EQ(sparse["elementSurfaces"][0]["tag"], 0);
  EXPECT_EQ(sparse["sensors"][0], json::parse(R"({"type": 2, "ids": [0,0,0,0], "position": [0,0,0]})"));
  EXPECT_EQ(sparse["moldMetal"][0]["nodes"], json::parse("[0,0,0,0]"));
  EXPECT_EQ(sparse["surfaceBoundaryConditionNames"][0], json::parse(R"({"name": "", "type": 0})"));
}

TEST(OfeJson, LoadFillsInTheCountsThatAreLeftOut) {
  const TempDir dir;
  const auto fields = test::readOfe(test::writeOfe(dir, std::string(kFourNodes) + R"(
    "header": {"fields": {"m_HEADER_NElemM": 77, "17": 0}},
    "elementsPlastic": [{"nodes": [1,2,3,4], "a": 3}, {"nodes": [1,2,3,4], "a": 1}, {"nodes": [1,2,3,4], "a": 3}],
    "elementsMoldBase": [{"nodes": [1,2,3,4], "a": 5001}, {"nodes": [1,2,3,4], "a": 9999},
      {"nodes": [1,2,3,4], "a": 5000}, {"nodes": [1,2,3,4], "a": 10000}],
    "elementsCoolChannel": [{"nodes": [1,2,3,4], "a": 2}],
    "elementSurfaces": [{"nodes": [1,2,3,3]}],
    "sensors": [{"type": 2}, {"type": 6}, {"type": 2}],
    "coolantChannelLines": [[0,0,0,0,0,0,0,0], [0,0,0,0,0,0,0,0]]})"))["header"]["fields"];
  EXPECT_EQ(fields,
            json::parse(R"({"4": 3, "5": 77, "6": 1, "7": 1, "12": 4, "15": 2, "16": 4, "17": 0, "18": 2,
                                    "121": 2, "125": 1, "127": 1})"));
}

TEST(OfeJson, NumbersOfEitherSignAndTooSmallOnes) {
  const TempDir dir;
  const auto file = test::readOfe(
      test::writeOfe(dir, R"({"nodes": [[1e-60, -1e-400, 7.006492321624085e-46], [1, 1e0, 16777217]],
               "elementSurfaces": [{"nodes": [1,2,2,2], "tag": -2147483648}, {"nodes": [1,2,2,2], "tag": 2147483648}]})"));
  EXPECT_EQ(file["nodes"], json::parse("[[0, 0, 0], [1, 1, 16777216]]"));
  EXPECT_EQ(file["elementSurfaces"][0]["tag"], 2147483648U);
  EXPECT_EQ(file["elementSurfaces"][1]["tag"], 2147483648U);
}

TEST(OfeJson, TheFileIsWrittenInTheNearestVersion) {
  const TempDir dir;
  const auto versionOf = [&](const std::string& field, const view::LoadOptions& options = {}) {
    const std::string path = dir / "version.ofe";
    view::loadJson(R"({"nodes": [], "header": {"fields": {"0": )" + field + "}}}", "t", path, options);
    EXPECT_EQ(test::readOfe(path)["header"]["fields"].value("0", 0), std::stoi(field));
    OFEIO_Manipulator file;
    EXPECT_EQ(file.beginReading(path.c_str(), nullptr, 0), 1);
    return file.fileVersion();
  };
  const std::pair<const char*, int> cases[] = {
      {"2002", 2002},   {"2007", 2002},   {"2012", 2012},   {"13000", 2012},       {"13002", 13001},
      {"14000", 13001}, {"14003", 14003}, {"15000", 14003}, {"2147483647", 14003}, {"0", 14003}};
  for (const auto& [field, written] : cases) EXPECT_EQ(versionOf(field), written) << field;
  EXPECT_EQ(versionOf("14003", {2009}), 2009);
  EXPECT_EQ(versionOf("5", {2009}), 2009);
  const std::string legal = " (legal: 2002, 2008 to 2012, 13001, 14001 to 14003";
  EXPECT_EQ(failureOf([&] { versionOf("2001"); }), "t: header.fields.0: 2001" + legal + " or between them)");
  EXPECT_EQ(failureOf([&] { versionOf("-9"); }), "t: header.fields.0: -9" + legal + " or between them)");
  EXPECT_EQ(failureOf([&] { versionOf("2009", {2013}); }), "t: version 2013" + legal + ")");
}

// What is damaged is told before anything is printed.
TEST(OfeJson, DumpRefusesDamage) {
  const TempDir dir;
  const auto path = test::writeOfe(dir, test::kEverything);
  const std::string bytes = view::readWholeFile(path);
  const std::string damaged = dir / "damaged.ofe";
  for (std::size_t at = 0; at < bytes.size(); at += 61) {
    std::string flipped = bytes;
    flipped[at] = static_cast<char>(flipped[at] ^ 0x10);
    std::ofstream(damaged, std::ios::binary) << flipped;
    std::string printed;
    const auto told =
        failureOf([&] { view::dumpJson(damaged, [&](std::string_view piece) { printed += piece; }); });
    EXPECT_TRUE(told.starts_with(damaged + ": ") && printed.empty()) << at << told << printed;
  }
}

// Strings and floats that a program may have put into a file and JSON cannot express.
TEST(OfeJson, DumpNamesWhatJsonCannotExpress) {
  const TempDir dir;
  const std::string path = dir / "odd.ofe";
  const auto dumpOf = [&](const auto& change) {
    OFEIO_Manipulator file;
    change(file);
    EXPECT_EQ(file.beginWriting(path.c_str(), 2009, 0), 1);
    file.writeNodeBlockEntry(0, 0, 0);
    file.writeBoundaryConditionBlockEntry(1, 1, file.header.floatField(31));
    EXPECT_EQ(file.endWriting(), 1);
    return failureOf([&] { view::dumpJson(path); });
  };
  EXPECT_EQ(dumpOf([](auto& file) { file.setHeaderUnitString("10 \xB5m"); }),
            path + ": header.unit: \"10 ?m\" (legal: UTF-8 text)");
  EXPECT_EQ(dumpOf([](auto& file) { file.header.setFloatField(47, INFINITY); }),
            path + ": header.fields.47: inf (legal: a finite number, JSON has no other)");
  EXPECT_EQ(dumpOf([](auto&) {}), "no failure");
}

}  // namespace
