#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/json_mesh.h"
#include "support/run_variant.h"
#include "support/test_data.h"

namespace orvmesh::test {

using Lines = std::vector<std::string>;

// A source in which every rule of every variant has something to decide. Only numbers matter: the elements
// share the faces that they name, their geometry is arbitrary. The header's word i holds 1000 + i, but for
// version and scale.
//
//   contacts: part P1 and insert M1 share 1 2 3; insert M1 and mold M2 share 1 2 8; M4 (10001, written as an
//   insert) and M3 (5001, written as mold) share 9 10 11.
inline nlohmann::json mold(int version = 14001) {
  auto mesh = nlohmann::json::parse(testData("transfer/data/mold.json"));
  auto& fields = mesh["header"]["fields"];
  for (int i = 1; i < 120; ++i) fields[std::to_string(i)] = 1000 + i;
  fields["0"] = version;
  fields["29"] = 1;
  return mesh;
}
inline nlohmann::json moldWith(const std::string& field, const nlohmann::json& value) {
  auto mesh = mold();
  mesh["header"]["fields"][field] = value;
  return mesh;
}

// Numbers of a row in JSON, with blanks between them.
inline std::string words(const nlohmann::json& row) {
  std::string text;
  for (const auto& value : row) text += (text.empty() ? "" : " ") + value.dump();
  return text;
}

// The blocks of a result as lines of text, numbers in the order of the write operations.
inline Lines elementLines(const nlohmann::json& file, const char* block) {
  Lines lines;
  for (const auto& e : file.value(block, nlohmann::json::array()))
    lines.push_back(words(e["nodes"]) + " | " + words({e["a"], e["b"]}));
  return lines;
}
inline Lines surfaceLines(const nlohmann::json& file) {
  Lines lines;
  for (const auto& s : file.value("elementSurfaces", nlohmann::json::array())) {
    std::ostringstream tag;
    tag << std::hex << static_cast<std::uint32_t>(s["tag"].get<std::int64_t>());
    lines.push_back(
        words(s["nodes"]) + " | " +
        words({s["interfaceId"], s["ownerCode"], s["contactCode"], s["boundaryType"], s["elementNo"]}) + " " +
        tag.str());
  }
  return lines;
}

// Transfers in a folder of their own, where the log would stand.
class Transfers : public ::testing::Test, protected OwnFolder {
 protected:
  // The target of a transfer that succeeds.
  nlohmann::json transferred(const std::string& variant, const nlohmann::json& source) {
    result = runVariant(transfer, variant, writeOfe(dir, source.dump()), "target.ofe");
    EXPECT_STREQ(transfer.GetErrorMessage_Link(), "");
    return readOfe("target.ofe");
  }
  void expectTold(const std::string& part) const {
    const std::string told = transfer.GetErrorMessage_Link();
    EXPECT_NE(told.find(part), std::string::npos) << told << "\ninstead of " << part;
    EXPECT_EQ(told.find('\n'), std::string::npos);
  }
  // What the job prints.
  static std::string printedBy(const auto& job) {
    ::testing::internal::CaptureStdout();
    job();
    return ::testing::internal::GetCapturedStdout();
  }

  COrvMeshFormatTransfer transfer;
  int result = 0;
};

}  // namespace orvmesh::test
