#include <filesystem>
#include <fstream>
#include <limits>
#include <map>

#include "platform/ofeio.h"
#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

const char* const kAllVariants[] = {"channels", "hot-runner",   "stream-line",
                                    "moldbase", "part-inserts", "part-inserts-channels"};

// The log stands in the current folder.
class TransferObject : public ::testing::Test, protected OwnFolder {
 protected:
  static bool exists(const std::string& path) { return std::filesystem::exists(path); }
  // The mold with one header word changed.
  static std::string withField(int field, int value) {
    std::string json = moldJson();
    const std::string old = "\"" + std::to_string(field) + "\": " + std::to_string(1000 + field);
    return json.replace(json.find(old), old.size(),
                        "\"" + std::to_string(field) + "\": " + std::to_string(value));
  }

  COrvMeshFormatTransfer transfer;
};

TEST_F(TransferObject, ResultsSayWhichMaterialsThereAre) {
  struct Case {
    const char* variant;
    int inserts, channels, result;
  };
  for (const auto& c : {Case{"part-inserts", 0, 5, 0}, Case{"part-inserts", 1, 0, 1},
                        Case{"part-inserts-channels", 0, 0, 0}, Case{"part-inserts-channels", 1, 0, 1},
                        Case{"part-inserts-channels", 0, 2, 2}, Case{"part-inserts-channels", 4, 2, 3}}) {
    std::string json = withField(18, c.inserts);
    json.replace(json.find("\"17\": 1017"), 10, "\"17\": " + std::to_string(c.channels));
    std::filesystem::remove("target.ofe");
    EXPECT_EQ(runVariant(transfer, c.variant, writeOfe(dir, json), "target.ofe"), c.result) << c.variant;
    EXPECT_EQ(exists("target.ofe"), c.result > 0);
    EXPECT_FALSE(exists("MeshTranslate.log"));
  }
  std::string without = writeOfe(dir, withField(18, 0));
  std::string with = writeOfe(dir, moldJson());
  EXPECT_FALSE(transfer.IfMeshHasPartInsert(without.data()));
  EXPECT_TRUE(transfer.IfMeshHasPartInsert(with.data()));
}

TEST_F(TransferObject, HotRunnerRefusesOldSourcesAndKeepsTheLog) {
  EXPECT_EQ(runVariant(transfer, "hot-runner", writeOfe(dir, moldJson(13001)), "target.ofe"), -4);
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
    runVariant(transfer, "stream-line", writeOfe(dir, moldJson(source)), "target.ofe");
    ASSERT_EQ(exists("target.ofe"), written != 0) << source;
    EXPECT_EQ(std::string(transfer.GetErrorMessage_Link()).empty(), written != 0) << source;
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
  EXPECT_NE(std::string(transfer.GetErrorMessage_Link()), "");
  EXPECT_FALSE(exists("target.ofe"));
}

TEST_F(TransferObject, NodeTypesAndLists) {
  const std::string source = writeOfe(dir, moldJson());
  const auto types = [&] {
    std::vector<int> out(static_cast<std::size_t>(transfer.GetTotalNodeNumber()) + 1, -7);
    transfer.GetPIGloalNodeType(out.data());
    return out;
  };
  std::string path = source;
  transfer.SetPartInsertMeshFilePath(path.data(), 3);
  const std::vector<int> typed{-7, 10, 5, 5, 1, 1, 1, 1, 3, 3, 3, 3, 2, 10, 10, 10, 10};
  EXPECT_EQ(types(), typed);
  std::vector<int> contact(static_cast<std::size_t>(transfer.GetNnodeContactPartAndPI()) + 1, -7);
  transfer.GetPPINodeID(contact.data());
  EXPECT_EQ(contact, (std::vector<int>{-7, 2, 3}));

  runVariant(transfer, "part-inserts-channels", source, "target.ofe");
  const std::vector<int> heaterFaces{-7, 10, 12, 5, 1, 1, 1, 1, 3, 3, 3, 3, 2, 12, 12, 12, 12};
  EXPECT_EQ(types(), heaterFaces);
  std::vector<int> blocks(static_cast<std::size_t>(transfer.GetMeshBlockSize()) + 1, -7);
  int* out = blocks.data();
  transfer.GetMoldBlock2Mat(out);
  EXPECT_EQ(blocks, (std::vector<int>{-7, 1, 5001, 5002, 10001, 10002, 10900, 10905}));

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

TEST_F(TransferObject, ASecondLargerMeshOnTheSameObject) {
  const char* small = R"({"format":"ofe-json","version":1,"header":{"fields":{"0":14001,"18":1}},
    "nodes":[[0,0,0],[1,0,0],[0,1,0],[0,0,1]],
    "elementsPlastic":[{"nodes":[1,2,3,4],"a":1,"b":1,"value":0}]})";
  runVariant(transfer, "part-inserts", writeOfe(dir, small), "target.ofe");
  EXPECT_EQ(transfer.GetTotalNodeNumber(), 4);
  runVariant(transfer, "part-inserts", writeOfe(dir, moldJson()), "target.ofe");
  ASSERT_EQ(transfer.GetTotalNodeNumber(), 16);
  std::vector<int> types(17);
  transfer.GetPIGloalNodeType(types.data());
  EXPECT_EQ(types[16], 10);
  const COrvMeshFormatTransfer copy = transfer;  // shares the arrays, frees nothing twice
  EXPECT_EQ(copy.GetNnodeContactPartAndPI(), 2);
}

TEST_F(TransferObject, ARefusedSourceIsToldAndCanStopBeforeTheTarget) {
  std::ofstream("broken.ofe") << "no such thing";
  for (const char* variant : kAllVariants) {
    for (const std::string source : {"broken.ofe", "missing.ofe"}) {
      std::ofstream("target.ofe") << "old";
      COrvMeshFormatTransfer stopping;
      stopping.SetStopOnRefusedSource(true);
      runVariant(stopping, variant, source, "target.ofe");
      EXPECT_EQ(std::string(stopping.GetErrorMessage_Link()).rfind(source + ": ", 0), 0U);
      EXPECT_EQ(std::filesystem::file_size("target.ofe"), 3U) << variant;
      std::filesystem::remove("MeshTranslate.log");
    }
  }
  // As constructed, the mold-base operation goes on and writes a header of the lowest version.
  EXPECT_EQ(runVariant(transfer, "moldbase", "missing.ofe", "target.ofe"), 1);
  EXPECT_EQ(readOfe("target.ofe")["header"]["fields"]["0"], 2009);
}

TEST_F(TransferObject, AnUnwritableTargetIsToldAndEveryBlockStillRuns) {
  const std::string source = writeOfe(dir, moldJson());
  std::filesystem::create_directory("folder");
  const struct {
    const char* variant;
    int result;
    const char* printed;
  } cases[] = {{"channels", 1, "Write OFE file open error\n"},
               {"stream-line", 1, "Write OFE file open error\n"},
               {"moldbase", 1, "Write OFE file open error\nCan not write OFE File atfolder\n"},
               {"part-inserts", 1, "Write OFE file open error\nCan not write OFE File\n"},
               {"part-inserts-channels", 3, "Write OFE file open error\n"}};
  for (const auto& c : cases) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(runVariant(transfer, c.variant, source, "folder"), c.result);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), c.printed) << c.variant;
    EXPECT_EQ(std::string(transfer.GetErrorMessage_Link()).rfind("folder: ", 0), 0U);
  }
  // A version that is never tried; of the others one attempt is enough.
  const char* const tried = "Write OFE file open error\nCan not write OFE File\n";
  const std::pair<int, const char*> versions[] = {
      {14000, "Can not write OFE File\n"}, {2012, tried}, {14003, tried}};
  for (const auto& [version, printed] : versions) {
    ::testing::internal::CaptureStdout();
    runVariant(transfer, "part-inserts", writeOfe(dir, moldJson(version)), "folder");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), printed) << version;
  }
}

TEST_F(TransferObject, TheMeshMayBeTheTargetOrUnderTheNameOfTheLog) {
  const std::string source = writeOfe(dir, moldJson());
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
  std::string json = moldJson();
  json.replace(json.find("\"29\": 1,"), 8, "\"29\": 0.001,");
  const std::string source = writeOfe(dir, json);
  runVariant(transfer, "stream-line", source, "target.ofe");
  const auto nodes = readOfe(source)["nodes"], written = readOfe("target.ofe")["nodes"];
  const float f = 0.001F;
  for (std::size_t i = 0; i < nodes.size(); ++i)
    for (std::size_t k = 0; k < 3; ++k) {
      const double inModel = nodes[i][k].get<float>() * static_cast<double>(f);
      EXPECT_EQ(written[i][k].get<float>(), static_cast<float>(inModel) * (1.0F / f));
    }
}

TEST_F(TransferObject, AFactorThatLeavesTheFloatsSpoilsNoTarget) {
  std::ofstream("target.ofe") << "old";
  for (const char* factor : {"1e-42", "3e38"}) {
    auto json = nlohmann::json::parse(moldJson());
    json["header"]["fields"]["29"] = std::stod(factor);
    json.erase("coolantChannelLayout");  // its integers would be refused first
    runVariant(transfer, "stream-line", writeOfe(dir, json.dump()), "target.ofe");
    EXPECT_NE(std::string(transfer.GetErrorMessage_Link()).find("no finite number"), std::string::npos)
        << factor;
    EXPECT_EQ(std::filesystem::file_size("target.ofe"), 3U);
  }
}

TEST_F(TransferObject, DiagnosticLinesOnlyWhenAskedFor) {
  const std::string source = writeOfe(dir, moldJson());
  ::testing::internal::CaptureStdout();
  for (const char* variant : kAllVariants) runVariant(transfer, variant, source, "target.ofe");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
  transfer.SetDebugLog(1);
  ::testing::internal::CaptureStdout();
  runVariant(transfer, "part-inserts-channels", source, "target.ofe");
  const std::string text = ::testing::internal::GetCapturedStdout();
  for (const char* line : {"Type 5 = 2\n", "Type 10 = 5\n", "Part insert Element = 2\n",
                           "Heater Element = 3,Coolant Element = 0\n", "Heater Group = 2,Coolant Group = 1\n",
                           "NFaceHeaterWall=1\n", "NFaceCCOthers=0\n", "NFaceHeaterOthers=2\n",
                           "Check CCNodecount=0Check HRnodecount=1Check HRAircount=5\n",
                           "m_HEADER_NElemS = 1007m_ofeWriter.m_HEADER_NElemSC = 1009\n",
                           "Ori NMatM=1016C Number=1017,m_NGroupHeater=2\n", "/// Writing Node ///\n",
                           "/// WriteOfeBCBin ///\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line << text;

  transfer.SetSTLDiagnostics(true);
  ::testing::internal::CaptureStdout();
  runVariant(transfer, "moldbase", source, "target.ofe");
  COrvCCDataForSolver lists;
  transfer.GetCCCombineMeshDataAndMemory(lists);
  EXPECT_EQ(
      ::testing::internal::GetCapturedStdout(),
      "Heater Element = 2,Coolant Element = 0\nHeater Group = 1,Coolant Group = 4\n"
      "m_HEADER_NElemS = 1007,iCount = 14\nm_oOFE.m_ofeReader.m_HEADER_NElemS  =1007\n"
      "m_oOFE.m_ofeReader.m_HEADER_NElemSC =1010\nm_HEADER_NElemS = 14, m_ofeWriter.m_HEADER_NElemSC = 0\n"
      "Ori NMatM=1016, C Number=1017, m_NGroupHeater=1\n"
      "m_ofeWriter.m_HEADER_NMatP=1016,m_ofeWriter.m_HEADER_NMatM=0\n"
      "m_ofeWriter.m_HEADER_NMatC=0,m_ofeWriter.m_HEADER_NMatI=1016\n"
      "Write m_HEADER_NLayerPI = 1055,m_oOFE.m_ofeReader.m_HEADER_NLayerCC=1057\n"
      "/// Writing Node ///\n/// WriteOfeElemPBin_OnlyMoldbase ///\nMold OFE->Part OFE\n"
      "Type 1 Number = 1\nType 5001 Number = 1\nType 5002 Number = 1\nType 6002 Number = 1\n"
      "Type 6905 Number = 1\nType 10001 Number = 1\nType 10900 Number = 1\n"
      "count_MB = 5,count_MI=1,count_HR=1\n/// WriteOfeElemSurfBin_OnlyMoldbase ///\n"
      "WriteOfeElemSurfBin_OnlyMoldbase() 1\n"
      "WriteOfeElemSurfBin_OnlyMoldbase() 2 create surface relation from " +
          source +
          "\nWriteOfeElemSurfBin_OnlyMoldbase() 3\nWriteOfeElemSurfBin_OnlyMoldbase() 4\n"
          "Total SurfElemt=14 )\ncount_Part     =6\n, count_Air    =0\n, count_Coolant=3\n, count_Outlet "
          "=4\n\n"
          "  count_interfaceID_1=5\n, count_interfaceID_2=1\n  ( count_MB_Part   =1\n    count_MB_Coolant=0\n"
          "    count_MB_Air    =0 ) \n, count_interfaceID_3=3\n, count_interfaceID_4=4\n"
          "WriteOfeElemSurfBin_OnlyMoldbase() 5\n/// WriteOfeBCBin ///\n/// Writing Sensor///\n"
          "/// WriteOfeBeamElemCCLBin///\n/// WriteOfeMoldMetalLayerToPartInsertLayerBin///\n"
          "/// WriteOfeCoolantChannelLayerBin///\n/// WriteData_OnlyMoldbase OK ///\n"
          "SolverCCData.m_SurfaceHRData.m_Dim=1\nSolverCCData.m_SurfaceCCData.m_Dim=0\n");
}

}  // namespace
