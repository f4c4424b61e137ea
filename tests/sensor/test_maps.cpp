#include <orvmesh/mesh_format_transfer.h>
#include <orvmesh/sensor_mapping.h>
#include <orvmesh/sensor_mapping_tools.h>

#include <climits>

#include "platform/cofedata.h"
#include "sensor/mesh.h"
#include "sensor/sensor_list.h"

namespace orvmesh::test {
namespace {

using Mapping = COrvMeshTransfer_SensorMapping;

Mapping mappingOf(const std::string& path, bool fast) {
  Mapping mapping;
  if (fast)
    mapping.SetMeshFilePath_Fast(path.c_str(), 1);
  else
    mapping.SetMeshFilePath_Std(path.c_str(), 0, 0);
  EXPECT_STREQ(mapping.GetErrorMessage_Link(), "");
  return mapping;
}

std::string entry(const Mapping& mapping, SensorMapCondition condition, int i) {
  return std::to_string(mapping.GetSensorMappingType(condition, i)) + " " +
         std::to_string(mapping.GetSensorMappingLocalID(condition, i)) + " " +
         std::to_string(mapping.GetSensorMappingGlobalID(condition, i));
}
std::vector<std::string> entries(const Mapping& mapping, SensorMapCondition condition) {
  std::vector<std::string> all;
  for (int i = 1; i <= mapping.GetTotalSensorNumber_Ori(); ++i) all.push_back(entry(mapping, condition, i));
  return all;
}

// (type, display) of the numbered sensors of a file as they stand.
std::vector<std::pair<int, int>> numbered(const std::string& path) {
  std::vector<std::pair<int, int>> sensors;
  const auto file = readOfe(path);
  for (const auto& sensor : file["sensors"])
    if (sensor["type"] != 3) sensors.emplace_back(sensor["type"], displayOf(sensor));
  return sensors;
}

// With field 2 the transfer keeps the mold's sensors together: that is what the fast map describes.
TEST(SensorMapping, AgreesWithWhatTheTransferWrites) {
  const TempDir dir;
  for (const bool fast : {false, true}) {
    SCOPED_TRACE(fast);
    std::string source = writeOfe(dir.path(), sensorMeshJson(kSensors, fast ? R"(, "2": 1)" : ""));
    std::string target = dir / "joined.ofe";
    COrvMeshFormatTransfer transfer;
    ASSERT_EQ(transfer.TransferMesh_CombinePI(source.data(), target.data()), 1);
    auto old = numbered(source);
    std::ranges::stable_sort(old, {}, &std::pair<int, int>::first);
    const auto joined = numbered(target);
    const Mapping mapping = mappingOf(source, fast);
    ASSERT_EQ(mapping.GetTotalSensorNumber_Ori(), static_cast<int>(old.size()));
    ASSERT_EQ(joined.size(), old.size());
    for (int i = 1; i <= mapping.GetTotalSensorNumber_Ori(); ++i) {
      const int g = mapping.GetSensorMappingGlobalID(SensorMap_Old2New, i);
      ASSERT_TRUE(1 <= g && g <= mapping.GetTotalSensorNumber_Ori());
      const auto [type, display] = old[static_cast<std::size_t>(i) - 1];
      EXPECT_EQ(joined[static_cast<std::size_t>(g) - 1],
                std::pair(mapping.GetSensorMappingType(SensorMap_Old2New, i), display))
          << i;
      EXPECT_EQ(type, mapping.GetSensorMappingType(SensorMap_New2Old, g)) << i;
      EXPECT_EQ(mapping.GetSensorMappingGlobalID(SensorMap_New2Old, g), fast ? g : i);
      const int local = mapping.GetSensorMappingLocalID(SensorMap_New2Old, g);
      EXPECT_EQ(mapping.GetSensorMappingGlobalID(SensorMap_Old2New, static_cast<SensorType>(type), local), g);
    }
  }
}

// Two part sensors of each kind would hide which number a column holds: one each, and two of type 4.
TEST(SensorMapping, ColumnsByHand) {
  const TempDir dir;
  const std::string path = writeOfe(
      dir.path(), sensorMeshJson({{1, 1, 1}, {2, 5, 2}, {4, 2, 3}, {4, 1, 4}, {5, 9, 5}, {6, 1, 6}}));
  const Mapping standard = mappingOf(path, false);
  EXPECT_EQ(entries(standard, SensorMap_Old2New),
            (std::vector<std::string>{"1 1 1", "2 2 3", "4 5 5", "1 2 2", "2 4 4", "6 6 6"}));
  EXPECT_EQ(entries(standard, SensorMap_New2Old),
            (std::vector<std::string>{"1 1 1", "4 2 4", "2 1 2", "5 1 5", "4 1 3", "6 1 6"}));
  const Mapping fast = mappingOf(path, true);
  EXPECT_EQ(entries(fast, SensorMap_Old2New),
            (std::vector<std::string>{"1 1 1", "2 1 4", "1 2 2", "1 3 3", "2 2 5", "6 1 6"}));
  EXPECT_EQ(entries(fast, SensorMap_New2Old),
            (std::vector<std::string>{"1 1 1", "4 1 2", "4 2 3", "2 1 4", "5 1 5", "6 1 6"}));
  // By type, the new-to-old map too is entered with the mesh's own order.
  EXPECT_EQ(standard.GetSensorMappingGlobalID(SensorMap_New2Old, SensorType_PartNode, 1), 4);
  EXPECT_EQ(standard.GetSensorMappingType(SensorMap_Old2New, SensorType_PartElement, 2), 2);
}

TEST(SensorMapping, QueriesOutsideGiveZero) {
  const TempDir dir;
  const Mapping full = mappingOf(writeOfe(dir.path(), sensorMeshJson(kSensors)), false);
  const int total = full.GetTotalSensorNumber_Ori();
  const Mapping none;
  EXPECT_EQ(full.GetSensorNumber_Ori(static_cast<SensorType>(3)), 0);
  EXPECT_EQ(full.GetSensorNumber_Ori(SensorType_MoldElement), 6);
  EXPECT_EQ(none.GetTotalSensorNumber_Ori() + none.GetSensorNumber_Ori(SensorType_Sixth), 0);
  for (const int condition : {0, 1, 2, -1, INT_MIN, INT_MAX}) {
    const auto c = static_cast<SensorMapCondition>(condition);
    for (const int i : {INT_MIN, -total, -1, 0, total + 1, INT_MAX})
      EXPECT_EQ(entry(full, c, i), "0 0 0") << i;
    EXPECT_EQ(entry(none, c, 1), "0 0 0");
    EXPECT_EQ(none.GetSensorMappingType(c, SensorType_PartElement, 1), 0);
    EXPECT_EQ(entry(full, c, 1) == "0 0 0", condition < 0 || condition > 1);
    for (const int type : {INT_MIN, 0, 3, 7})
      EXPECT_EQ(full.GetSensorMappingType(c, static_cast<SensorType>(type), 1), 0);
    for (const int local : {INT_MIN, -total, INT_MAX})
      EXPECT_EQ(full.GetSensorMappingGlobalID(c, SensorType_Sixth, local), 0);
  }
}

TEST(SensorMapping, ARefusedFileEmptiesTheStandardMapAndLeavesTheFastOne) {
  const TempDir dir;
  const std::string good = writeOfe(dir.path(), sensorMeshJson(kSensors));
  const std::string empty = writeOfe(dir.path(), sensorMeshJson({}));
  Mapping mapping = mappingOf(good, true);
  const Mapping copy = mapping;
  const int total = mapping.GetTotalSensorNumber_Ori();
  std::vector<std::string> refused{dir / "none.ofe", dir.path()};
  for (const char* counts :
       {R"(, "120": -1)", R"(, "125": 2147483647, "124": 2147483647)", R"(, "121": 70000)"})
    refused.push_back(writeOfe(dir.path(), sensorMeshJson(kSensors, counts)));
  for (const std::string& path : refused) {
    mapping.SetMeshFilePath_Fast(path.c_str(), 0);
    EXPECT_EQ(std::string(mapping.GetErrorMessage_Link()).rfind(path + ": ", 0), 0U);
    EXPECT_EQ(entries(mapping, SensorMap_Old2New), entries(copy, SensorMap_Old2New));
  }
  mapping.SetMeshFilePath_Fast(nullptr, 0);
  mapping.SetMeshFilePath_Fast(empty.c_str(), 0);
  EXPECT_EQ(mapping.GetTotalSensorNumber_Ori(), total) << "no sensors: the counts stay";
  mapping.SetMeshFilePath_Std(refused.front().c_str(), 0, 0);
  EXPECT_EQ(mapping.GetTotalSensorNumber_Ori(), 0);
  EXPECT_EQ(copy.GetTotalSensorNumber_Ori(), total);
}

TEST(SensorMappingTools, PositionsFollowTheFile) {
  const TempDir dir;
  COrvSensorMappingTools tools;
  EXPECT_EQ(tools.GetSensorDisplayID(1) + tools.GetSensorGlobalID(0), 0);
  const auto read = [&](const std::vector<TestSensor>& sensors, const char* fields = "") {
    EXPECT_TRUE(tools.SetMeshFilePath(writeOfe(dir.path(), sensorMeshJson(sensors, fields)).c_str()));
  };
  const auto displays = [&](std::initializer_list<int> globals) {
    std::vector<int> found;
    for (const int global : globals) found.push_back(tools.GetSensorDisplayID(global));
    return found;
  };
  read({{1, 1, 7}, {3, 1, 9}, {6, 1, 7}});
  EXPECT_EQ(displays({INT_MIN, -1, 0, 1, 2, 3, INT_MAX}), (std::vector{0, 0, 0, 7, 7, 0, 0}));
  EXPECT_EQ(std::pair(1, 0), std::pair(tools.GetSensorGlobalID(7), tools.GetSensorGlobalID(9)));
  const COrvSensorMappingTools copy(tools);
  read({{5, 1, 3}, {4, 1, 2}});
  EXPECT_EQ(tools.GetSensorGlobalID(3), 1) << "in the order of the file, not of the types";
  EXPECT_EQ(copy.GetSensorDisplayID(2), 7);
  // The header counts more, fewer, or what cannot be.
  const std::vector<TestSensor> two{{1, 1, 8}, {1, 1, 9}};
  read(two, R"(, "120": 4)");
  EXPECT_EQ(displays({2, 4}), (std::vector{9, 0}));
  read(two, R"(, "120": 1)");
  EXPECT_EQ(displays({1, 2}), (std::vector{8, 0}));
  read(two, R"(, "120": 2147483647)");
  EXPECT_EQ(displays({1}), std::vector{8});

  testing::internal::CaptureStdout();
  EXPECT_FALSE(tools.SetMeshFilePath((dir / "none").c_str()));
  EXPECT_FALSE(tools.SetMeshFilePath(nullptr));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Open mesh File Fail\nOpen mesh File Fail\n");
}

TEST(SensorList, NamesWhatEachSensorLiesIn) {
  const TempDir dir;
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(writeOfe(dir.path(), sensorMeshJson(kSensors)).c_str(), nullptr, 0, false), 1);
  std::map<int, std::string> component;
  for (const auto& row : sensor::listSensors(data.model())) component[row.display] = row.component;
  std::string text;
  for (const auto& [display, name] : component) text += std::to_string(display) + " " + name + "; ";
  EXPECT_EQ(text,
            "1 part (1); 2 mold base (1); 3 part insert (5002); 4 part (1); 5 mold base (1); "
            "6 part insert (10001); 7 ; 8 part (1); 9 ; 10 ; 11 part insert (10001); 12 part insert (5002); "
            "13 part (1); 14 mold base (10002); 15 mold base (5001); 16 mold base (10002); 17 part (1); "
            "18 part (1); ");
}

}  // namespace
}  // namespace orvmesh::test
