#include <gtest/gtest.h>
#include <orvmesh/dmpio_manipulator.h>
#include <orvmesh/mesh_format_transfer.h>
#include <orvmesh/sensor_file.h>
#include <orvmesh/sensor_mapping_tools.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <optional>

#include "dmpio/dump_content.h"
#include "embedded/all_blocks.h"
#include "platform/cofedata.h"
#include "support/allocation_hook.h"
#include "support/json_mesh.h"
#include "support/test_data.h"

// Every entry operation with its n-th allocation failing, for every n.
namespace orvmesh::test {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

// While it is armed allocation `at` (from 1) fails, or all from there on: operator new in all forms, malloc
// and the like of the code linked in.
struct Plan {
  bool armed = false, stays = false;
  long at = 0, count = 0;
} plan;

}  // namespace

bool grants(std::size_t) {
  if (!plan.armed) return true;
  ++plan.count;
  return plan.count != plan.at && !(plan.stays && plan.count > plan.at);
}

namespace {

constexpr const char* kHistory =
    "9\n[HEADER] text\n[SENSOR INFO]\nnumbers\n2\n0\n0\n0\n0\n0\n1  7      1 2 3\n1  8      1 2 3\n"
    "[HISTORY DATA]\n0.5\n35.00\n36.00\n\n[EOF]\n";

// An operation on a fresh object; it tells whether it worked.
struct Operation {
  const char* name;
  std::function<bool()> run;
  bool mayThrow = false;
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

// The frame of the transfer entries, the only ones that an allocation failure may leave as an exception.
template <class Entry>
Operation transfer(const char* name, Entry entry) {
  return {name,
          [entry] {
            COrvMeshFormatTransfer object;
            object.SetStopOnRefusedSource(true);
            object.SetKeepTargetNumbers(true);
            object.SetSTLDiagnostics(true);
            std::string source = "mold.ofe", target = "target";
            entry(object, source.data(), target.data());
            return *object.GetErrorMessage_Link() == '\0';
          },
          true};
}

// The constructor is the one that may throw.
template <class Work>
bool withDump(Work work) {
  std::optional<Dump> dump;
  try {
    dump.emplace();
  } catch (const std::bad_alloc&) {
    return false;
  }
  return work(*dump);
}

bool convert(int version) {
  return withDump([=](Dump& dump) {
    dump.convert("map.dmp", "target", version);
    return *dump.getErrorText() == '\0';
  });
}

bool writeDump(int version) {
  static const Content content = everything();
  return withDump([=](Dump& dump) {
    setCounts(dump, content);
    if (dump.beginWriting("target", version) != 1) return false;
    writeContent(dump, content);
    return dump.endWriting() == 1;
  });
}

// Of one block, entry by entry; the others are read alike.
bool readDump(const char* path) {
  return withDump([=](Dump& dump) {
    int first = 0, second = 0, entries = 0;
    if (dump.beginReading(path, nullptr) != 1) return false;
    while (dump.readNodeMapBlockEntry(first, second) >= 0) ++entries;
    return entries == 3;
  });
}

bool mapSensors(void (*set)(COrvMeshTransfer_SensorMapping& maps)) {
  COrvMeshTransfer_SensorMapping maps;
  set(maps);
  return *maps.GetErrorMessage_Link() == '\0' && maps.GetTotalSensorNumber_Ori() == 2;
}

bool readModel() {
  COFEData data;
  return data.ReadDataBin("mold.ofe", nullptr, 0, false) == 1 && !data.contactFaces().empty();
}

// A tetrahedron as a channel, by all operations that make an OFV file of it.
bool makeOfv(int (COrvMeshFormatTransfer::*write)()) {
  static constexpr double kX[] = {0, 0, 1, 0, 0}, kY[] = {0, 0, 0, 1, 0}, kZ[] = {0, 0, 0, 0, 1};
  static constexpr int kCounts[] = {0, 3, 3, 3, 3}, kNodes[] = {0, 1, 3, 2, 1, 2, 4, 2, 3, 4, 1, 4, 3};
  static constexpr int kOnes[] = {0, 1, 1, 1, 1}, kZeros[] = {0, 0, 0, 0, 0};
  COrvMeshFormatTransfer t;
  const bool given = t.SetCTG2OFVFilePath("target") == 1 && t.SetCTGMeshInfo(4, 4, 12, 1, 1, 1) == 1 &&
                     t.SetCTGCavityInfo(kOnes, kOnes) == 1 && t.SetCTGCavityCellInfo(kOnes) == 1 &&
                     t.SetCTGCavityNodeInfo(kX, kY, kZ) == 1 &&
                     t.SetCTGCavityFaceInfo(kCounts, kNodes, kOnes, kZeros) == 1 &&
                     t.SetInletID2ChannelGrpID(kOnes, kOnes) == 1;
  const bool written = given && (t.*write)() == CavityResult_Done;
  EXPECT_EQ(written, *t.GetErrorMessage_Link() == '\0');
  t.FreeMemory();
  return written;
}

const Operation kOperations[] = {
    transfer("channels", [](auto& t, char* s, char* d) { t.TransferMesh_OnlyChannel(s, d); }),
    transfer("hotRunner", [](auto& t, char* s, char* d) { t.TransferMesh_OnlyHotRunner(s, d); }),
    transfer("streamLine", [](auto& t, char* s, char* d) { t.TransferMesh_StreamLineMesh(s, d); }),
    transfer("moldBase", [](auto& t, char* s, char* d) { t.TransferMesh_OnlyMoldbase(s, d); }),
    transfer("partInserts", [](auto& t, char* s, char* d) { t.TransferMesh_CombinePI(s, d); }),
    transfer("partInsertsAndChannels",
             [](auto& t, char* s, char* d) { t.TransferMesh_CombinePIAndChannel(s, d); }),
    transfer("CTG", [](auto& t, char* s, char* d) { t.TransSolidOFEtoCTG(s, d); }),
    transfer("nodeTypes", [](auto& t, char* s, char*) { t.SetPartInsertMeshFilePath(s, 0); }),
    transfer("hasInserts", [](auto& t, char* s, char*) { (void)t.IfMeshHasPartInsert(s); }),
    {"dumpToText", [] { return convert(1023); }},
    {"dumpToBlocks", [] { return convert(2004); }},
    {"dumpRead", [] { return readDump("blocks.dmp"); }},
    {"dumpReadText", [] { return readDump("text.dmp"); }},
    {"dumpWrite", [] { return writeDump(2004); }},
    {"dumpWriteText", [] { return writeDump(1023); }},
    {"sensorMapping",
     [] { return mapSensors([](auto& maps) { maps.SetMeshFilePath_Std("mold.ofe", 0, 0); }); }},
    {"fastSensorMapping",
     [] { return mapSensors([](auto& maps) { maps.SetMeshFilePath_Fast("mold.ofe", 1); }); }},
    {"sensorFile",
     [] {
       COrvMeshTransfer_SensorFile file;
       file.TransferSensorFile_SNC("history.snc", "mold.ofe", 0, 0);
       return *file.GetErrorMessage_Link() == '\0';
     }},
    {"sensorTools",
     [] {
       COrvSensorMappingTools tools;
       return tools.SetMeshFilePath("mold.ofe") && tools.GetSensorDisplayID(1) != 0;
     }},
    {"cavityToOFV", [] { return makeOfv(&COrvMeshFormatTransfer::GetTransOFV); }},
    {"channelsToOFV", [] { return makeOfv(&COrvMeshFormatTransfer::GetTransOFV_OnlyChannel); }},
    {"writeOFE", [] { return writeAllBlocks("target") == 1; }, true},
    {"readOFE", [] { return entryRefusalOf("all.ofe").empty(); }, true},
    {"model", readModel, true},
};

Files filesHere() {
  Files files;
  for (const auto& entry : fs::directory_iterator("."))
    files[entry.path().filename()] = bytesOf(entry.path());
  return files;
}

std::size_t openDescriptors() {
  const fs::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class Allocations : public ::testing::TestWithParam<Operation> {
 protected:
  void SetUp() override {
    fs::current_path(dir_.path());
    fs::rename(writeOfe(".", testData("alloc/data/mold.json")), "mold.ofe");
    ASSERT_EQ(writeAllBlocks("all.ofe"), 1);
    ASSERT_EQ(writeFile("blocks.dmp", 2004, everything()), 1);
    ASSERT_EQ(writeFile("text.dmp", 1023, everything()), 1);
    ASSERT_EQ(writeFile("map.dmp", 1023, {}), 1);
    writeBytes("history.snc", kHistory);
    writeBytes("target", "old");
    before_ = filesHere();
    output_ = std::cout.rdbuf(nullptr);  // what the operations print, and what they would allocate for it
  }
  void TearDown() override {
    std::cout.rdbuf(output_);
    fs::current_path("/");
  }
  void restore() {
    for (const auto& [name, bytes] : filesHere())
      if (!before_.contains(name)) fs::remove(name);
    for (const auto& [name, bytes] : before_)
      if (!fs::exists(name) || bytesOf(name) != bytes) writeBytes(name, bytes);
  }

  // The operation with its n-th allocation failing, or all from there on: false when it has fewer.
  bool runFailing(long n, bool stays);

  TempDir dir_;
  Files before_, after_;
  std::streambuf* output_ = nullptr;
};

bool Allocations::runFailing(long n, bool stays) {
  const Operation& operation = GetParam();
  bool worked = false, threw = false;
  plan = {true, stays, n, 0};
  try {
    worked = operation.run();
  } catch (const std::bad_alloc&) {
    threw = true;
  }
  plan.armed = false;
  EXPECT_FALSE(threw && !operation.mayThrow) << n;
  Files now = filesHere();
  // The sensor file is rewritten in place; until it is whole its old content is in the copy.
  if (const auto copy = now.extract("history.snc.tmc"); copy && !worked) now["history.snc"] = copy.mapped();
  for (const auto& [name, bytes] : now) {
    const bool isOld = before_.contains(name) && before_.at(name) == bytes;
    const bool isNew = after_.contains(name) && after_.at(name) == bytes;
    EXPECT_TRUE(isNew || (isOld && !worked)) << n << ": " << name << (worked ? " after success" : "");
  }
  for (const auto& [name, bytes] : before_) EXPECT_TRUE(now.contains(name)) << n << ": " << name;
  return plan.count >= n;
}

TEST_P(Allocations, EveryOneMayFail) {
  const auto descriptors = openDescriptors();
  ASSERT_TRUE(GetParam().run());  // once, so that what the process keeps is there
  restore();
  ASSERT_TRUE(GetParam().run());
  after_ = filesHere();
  for (const bool stays : {false, true}) {
    for (long n = 1;; ++n) {
      restore();
      if (!runFailing(n, stays) || HasFailure()) break;
      if (n % 32 != 1) continue;
      restore();
      EXPECT_TRUE(GetParam().run()) << "after a failure at " << n;
    }
  }
  EXPECT_EQ(openDescriptors(), descriptors);
}

INSTANTIATE_TEST_SUITE_P(Operations, Allocations, ::testing::ValuesIn(kOperations),
                         [](const auto& operation) { return std::string(operation.param.name); });

}  // namespace
}  // namespace orvmesh::test
