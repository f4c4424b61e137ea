#include <filesystem>
#include <fstream>
#include <limits>
#include <map>

#include "platform/ofeio.h"
#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

class TransferObject : public Transfers {
 protected:
  static bool exists(const std::string& path) { return std::filesystem::exists(path); }
  int run(const std::string& variant, const nlohmann::json& source) {
    return runVariant(transfer, variant, writeOfe(dir, source.dump()), "target.ofe");
  }
};

TEST_F(TransferObject, ResultsSayWhichMaterialsThereAre) {
  struct Case {
    const char* variant;
    int inserts, channels, result;
  };
  for (const auto& c : {Case{"part-inserts", 0, 5, 0}, Case{"part-inserts", 1, 0, 1},
                        Case{"part-inserts-channels", 0, 0, 0}, Case{"part-inserts-channels", 1, 0, 1},
                        Case{"part-inserts-channels", 0, 2, 2}, Case{"part-inserts-channels", 4, 2, 3}}) {
    auto source = moldWith("18", c.inserts);
    source["header"]["fields"]["17"] = c.channels;
    std::string path = writeOfe(dir, source.dump());
    std::filesystem::remove("target.ofe");
    EXPECT_EQ(runVariant(transfer, c.variant, path, "target.ofe"), c.result) << c.variant;
    EXPECT_EQ(exists("target.ofe"), c.result > 0);
    EXPECT_FALSE(exists("MeshTranslate.log"));
    EXPECT_EQ(transfer.IfMeshHasPartInsert(path.data()), c.inserts > 0);
  }
}

TEST_F(TransferObject, HotRunnerRefusesOldSourcesAndKeepsTheLog) {
  EXPECT_EQ(run("hot-runner", mold(13001)), -4);
  EXPECT_FALSE(exists("target.ofe"));
  EXPECT_TRUE(exists("MeshTranslate.log"));
}

TEST_F(TransferObject, VersionsStepDownWithinTheirThousand) {
  // Source version, version of the file written; 0: never written. Field 0 stays as the source has it.
  const std::map<int, int> cases{{2009, 2009},   {2012, 2012},   {13001, 13001}, {13002, 13001},
                                 {14001, 14001}, {14003, 14003}, {14004, 14003}, {14999, 14003},
                                 {14000, 0},     {15000, 0},     {13000, 0},     {15002, 0},
                                 {2011, 2011}};
  for (const auto& [source, written] : cases) {
    std::filesystem::remove("target.ofe");
    run("stream-line", mold(source));
    ASSERT_EQ(exists("target.ofe"), written != 0) << source;
    EXPECT_EQ(*transfer.GetErrorMessage_Link() == '\0', written != 0) << source;
    if (written == 0) continue;
    OFEIO_Manipulator reader;
    ASSERT_EQ(reader.beginReading("target.ofe", nullptr, 0), 1);
    EXPECT_EQ(reader.fileVersion(), written) << source;
    EXPECT_EQ(reader.header[0], source);
  }
}

// A file may state any number; the search for a version ends.
TEST_F(TransferObject, NoVersionIsTooLow) {
  OFEIO_Manipulator writer;
  ASSERT_EQ(writer.beginWriting("lowest.ofe", 14001, 0), 1);
  writer.header[m_HEADER_Version] = std::numeric_limits<std::int32_t>::min();
  ASSERT_EQ(writer.endWriting(), 1);
  runVariant(transfer, "channels", "lowest.ofe", "target.ofe");
  EXPECT_STRNE(transfer.GetErrorMessage_Link(), "");
  EXPECT_FALSE(exists("target.ofe"));
}

TEST_F(TransferObject, NodeTypesAndLists) {
  // A smaller mesh before, whose lists are too short for the next one.
  run("part-inserts",
      nlohmann::json::parse(R"({"header": {"fields": {"0": 14001, "18": 1}}, "nodes": [[0, 0, 0]]})"));
  EXPECT_EQ(transfer.GetTotalNodeNumber(), 1);

  const auto listOf = [](int count, const auto& fill) {
    std::vector<int> list(static_cast<std::size_t>(count) + 1, -7);
    fill(list.data());
    return list;
  };
  const auto types = [&] {
    return listOf(transfer.GetTotalNodeNumber(), [&](int* out) { transfer.GetPIGloalNodeType(out); });
  };
  std::string source = writeOfe(dir, mold().dump());
  transfer.SetPartInsertMeshFilePath(source.data(), 3);
  EXPECT_EQ(types(), (std::vector<int>{-7, 10, 5, 5, 1, 1, 1, 1, 3, 3, 3, 3, 2, 10, 10, 10, 10}));
  EXPECT_EQ(listOf(transfer.GetNnodeContactPartAndPI(), [&](int* out) { transfer.GetPPINodeID(out); }),
            (std::vector<int>{-7, 2, 3}));

  runVariant(transfer, "part-inserts-channels", source, "target.ofe");
  EXPECT_EQ(types(), (std::vector<int>{-7, 10, 12, 5, 1, 1, 1, 1, 3, 3, 3, 3, 2, 12, 12, 12, 12}));
  EXPECT_EQ(listOf(transfer.GetMeshBlockSize(), [&](int* out) { transfer.GetMoldBlock2Mat(out); }),
            (std::vector<int>{-7, 1, 5001, 5002, 10001, 10002, 10900, 10905}));
  const COrvMeshFormatTransfer copy = transfer;  // shares the arrays, frees nothing twice
  EXPECT_EQ(copy.GetNnodeContactPartAndPI(), 2);

  COrvCCDataForSolver lists;
  lists.m_SurfaceHeaterData.m_NodeID = std::shared_ptr<int[]>(new int[9]());
  int* const own = lists.m_SurfaceHeaterData.m_NodeID.get();
  transfer.GetCCCombineMeshDataAndMemory(lists);
  EXPECT_EQ(lists.m_NGroupCoolant, 1);
  EXPECT_EQ(lists.m_NGroupHeater, 2);
  EXPECT_EQ(lists.m_SurfaceCCData.m_Dim, 0);
  EXPECT_EQ(lists.m_SurfaceHRAirData.m_Dim, 0);
  ASSERT_EQ(lists.m_SurfaceHRData.m_Dim, 1);
  EXPECT_EQ(lists.m_SurfaceHRData.m_NodeID[1], 1);
  ASSERT_EQ(lists.m_SurfaceHeaterData.m_Dim, 5);
  EXPECT_EQ(lists.m_SurfaceHeaterData.m_NodeID.get(), own);
  EXPECT_EQ(std::vector<int>(own, own + 6), (std::vector<int>{0, 2, 13, 14, 15, 16}));
}

// As constructed. That the option SetStopOnRefusedSource stops all variants is seen at the command.
TEST_F(TransferObject, ARefusedSourceMakesAnEmptyMeshOfTheLowestVersion) {
  EXPECT_EQ(runVariant(transfer, "moldbase", "missing.ofe", "target.ofe"), 1);
  expectTold("missing.ofe: ");
  EXPECT_EQ(readOfe("target.ofe")["header"]["fields"]["0"], 2009);
}

TEST_F(TransferObject, AnUnwritableTargetIsToldAndEveryBlockStillRuns) {
  std::filesystem::create_directory("folder");
  const std::string open = "Write OFE file open error\n", line = "Can not write OFE File\n";
  const struct {
    const char* variant;
    int version, result;
    std::string printed;
  } cases[] = {{"channels", 14001, 1, open},
               {"stream-line", 14001, 1, open},
               {"moldbase", 14001, 1, open + "Can not write OFE File atfolder\n"},
               {"part-inserts-channels", 14001, 3, open},
               {"part-inserts", 14001, 1, open + line},
               // A version that is never tried; of the others one attempt is enough.
               {"part-inserts", 14000, 1, line},
               {"part-inserts", 2012, 1, open + line},
               {"part-inserts", 14003, 1, open + line}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.variant + std::to_string(c.version));
    const std::string source = writeOfe(dir, mold(c.version).dump());
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(runVariant(transfer, c.variant, source, "folder"), c.result); }),
              c.printed);
    if (c.version != 14000) expectTold("folder: ");
  }
}

TEST_F(TransferObject, TheMeshMayBeTheTargetOrUnderTheNameOfTheLog) {
  const std::string source = writeOfe(dir, mold().dump());
  std::filesystem::copy_file(source, "MeshTranslate.log");
  std::string path = "MeshTranslate.log";
  EXPECT_TRUE(transfer.IfMeshHasPartInsert(path.data()));
  runVariant(transfer, "moldbase", path, "target.ofe");
  EXPECT_EQ(readOfe(path), readOfe(source));
  runVariant(transfer, "moldbase", source, path);
  EXPECT_EQ(readOfe(path), readOfe("target.ofe"));
  runVariant(transfer, "moldbase", source, source);
  EXPECT_EQ(readOfe(source), readOfe("target.ofe"));
}

TEST_F(TransferObject, ArraysOfTheCallerStayAndTooSmallOnesAreMadeAnew) {
  COrvCCData data;
  data.m_Dim = 10;
  data.CreateNodeMemory();
  data.m_NodeID.reset();
  data.m_Dim = 3;
  data.CreateNodeMemory();
  const std::shared_ptr<double[]> own(new double[9]());
  data.m_NodeDataExtra = own;
  const auto kept = data.m_NodeData[0];
  data.m_Dim = 8;
  data.CreateNodeMemory();
  data.m_NodeID[8] = 1;  // beyond the array made for 3
  EXPECT_EQ(data.m_NodeDataExtra, own);
  EXPECT_EQ(data.m_NodeData[0], kept);
}

TEST_F(TransferObject, LengthsAreDividedByTheFactorAgain) {
  const auto written = transferred("stream-line", moldWith("29", 0.001))["nodes"];
  const auto stored = mold()["nodes"].flatten();
  const float f = 0.001F;
  for (const auto& [place, coordinate] : stored.items()) {
    const double inModel = coordinate.get<float>() * static_cast<double>(f);
    EXPECT_EQ(written[nlohmann::json::json_pointer(place)].get<float>(),
              static_cast<float>(inModel) * (1.0F / f))
        << place;
  }
}

TEST_F(TransferObject, AFactorThatLeavesTheFloatsSpoilsNoTarget) {
  std::ofstream("target.ofe") << "old";
  for (const double factor : {1e-42, 3e38}) {
    auto source = moldWith("29", factor);
    source.erase("coolantChannelLayout");  // its integers would be refused first
    run("stream-line", source);
    expectTold("no finite number");
    EXPECT_EQ(std::filesystem::file_size("target.ofe"), 3U) << factor;
  }
}

TEST_F(TransferObject, DiagnosticLinesOnlyWhenAskedFor) {
  const std::string source = writeOfe(dir, mold().dump());
  const auto printed = [&](const char* variant) {
    return printedBy([&] { runVariant(transfer, variant, source, "target.ofe"); });
  };
  for (const char* variant : kVariantNames) EXPECT_EQ(printed(variant), "") << variant;
  transfer.SetDebugLog(1);
  const std::string text = printed("part-inserts-channels");
  std::istringstream lines(testData("transfer/data/joined_diagnostics.txt"));
  for (std::string line; std::getline(lines, line);)
    EXPECT_NE(text.find(line + "\n"), std::string::npos) << line << text;

  transfer.SetSTLDiagnostics(true);
  const std::string ofMoldBase = printed("moldbase") + printedBy([&] {
                                   COrvCCDataForSolver lists;
                                   transfer.GetCCCombineMeshDataAndMemory(lists);
                                 });
  std::string expected = testData("transfer/data/moldbase_diagnostics.txt");
  EXPECT_EQ(ofMoldBase, expected.replace(expected.find("@SOURCE@"), 8, source));
}

}  // namespace
