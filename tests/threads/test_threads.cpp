#include <gtest/gtest.h>
#include <orvmesh/channel_result_map.h>
#include <orvmesh/channel_surface_node_map.h>
#include <orvmesh/check_bounding_box.h>
#include <orvmesh/cooling_channel_surface.h>
#include <orvmesh/dmpio_manipulator.h>
#include <orvmesh/heat_source.h>
#include <orvmesh/sensor_file.h>
#include <orvmesh/sensor_mapping_tools.h>
#include <orvmesh/transfer_20_to_02.h>
#include <orvmesh/write_mesh_data_as_ofe.h>

#include <atomic>
#include <barrier>
#include <clocale>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

#include "check/report.h"
#include "dmpio/dump_json.h"
#include "import/brick_mold.h"
#include "import/import.h"
#include "platform/text_stream.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/recorded_numbers.h"
#include "transfer/mold.h"
#include "view/ctg_mesh.h"
#include "view/export_vtu.h"
#include "view/file_info.h"

// Objects in different threads do not disturb each other: every thread does all jobs on files of its own, and
// what it gets is what a thread alone gets. Build it with the preset tsan, too.
namespace orvmesh::test {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

constexpr int kThreads = 8;
constexpr int kRounds = 3;

// The folder of one thread, and what its jobs were told.
class Place {
 public:
  explicit Place(const std::string& folder) : folder_(folder) { fs::create_directory(folder); }
  std::string operator/(const std::string& name) const { return folder_ + "/" + name; }
  void say(const auto&... values) { ((answers_ << values << ' '), ...) << '\n'; }
  // Entries 1 to count.
  void sayAll(const auto* values, int count) {
    for (int i = 1; i <= count; ++i) answers_ << values[i] << ' ';
    answers_ << '\n';
  }
  // Every file and the answers; the folder's name is left out where it stands in a text.
  Files files() const {
    Files files{{"the answers", answers_.str()}};
    for (const auto& entry : fs::directory_iterator(folder_))
      files[entry.path().filename()] = bytesOf(entry.path());
    for (auto& [name, bytes] : files)
      for (auto at = bytes.find(folder_); at != bytes.npos; at = bytes.find(folder_, at))
        bytes.erase(at, folder_.size());
    return files;
  }

 private:
  std::string folder_;
  std::ostringstream answers_;
};

void importMold(Place& at) {
  BrickMold mold(
      "MMMMMMMM/MPPPIPPM/MPPIIPPM/CCCCCCCC/MMMMMMMM/hhhhhhhh "
      "MMMMMMMM/HHPPIPPM/MPPPPPPM/NNNNNNNN/DDDDDDDD/MMMMMMMM "
      "MMMMMMMM/MMMMMMMM/MMMMMMMM/NNNNNNNN/MMMMMMMM/MMMMMMMM",
      Cells::tetrahedra);
  mold.addPoint("sensor:1:1", 1.5, 1.25, 0.5);
  mold.addPoint("sensor:4:2", 0.5, 0.25, 0.5);
  writeBytes(at / "mold.msh", writeMsh(mold.mesh, Encoding::binary41));
  fs::last_write_time(at / "mold.msh", fs::file_time_type{});  // which the mesh gets as its date
  const auto report = importing::importMesh({at / "mold.msh", at / "mold.ofe", "", 1, {}, false});
  at.say(importing::reportText(report), importing::reportJson(report));
}

void recordNumbers(Place& at, const COrvMeshFormatTransfer& object, const std::string& target) {
  for (const int version : {1023, 2004}) {
    const std::string dump = target + "." + std::to_string(version);
    dmpio::writeNumberMaps(numberMapsOf(object), dump, version);
    dmpio::dumpAsJson(dump, [&](std::string_view text) { at.say(text); });
    DMPIO_Manipulator_C converter;
    converter.convert(dump.c_str(), (dump + "c").c_str(), version == 1023 ? 2003 : 1022);
    at.say(converter.getErrorText());
  }
}

void transfer(Place& at, const std::string& mesh) {
  for (const char* const variant : kVariantNames) {
    COrvMeshFormatTransfer object;
    object.SetKeepTargetNumbers(true);
    object.SetSTLDiagnostics(true);
    object.SetDebugLog(1);
    const std::string target = at / (mesh + "." + variant);
    at.say(runVariant(object, variant, at / mesh, target), object.GetErrorMessage_Link(),
           object.GetDropped_Link());
    std::vector<int> types(static_cast<std::size_t>(object.GetTotalNodeNumber()) + 1);
    object.GetPIGloalNodeType(types.data());
    at.sayAll(types.data(), object.GetTotalNodeNumber());
    recordNumbers(at, object, target);
    at.say(check::reportAsText(check::checkFile(target, std::nullopt)));
  }
}

void exportCtg(Place& at, const std::string& mesh) {
  COrvMeshFormatTransfer object;
  std::string source = at / mesh, target = source + ".ctg";
  object.TransSolidOFEtoCTG(source.data(), target.data());
  at.say(object.GetErrorMessage_Link(), failureOf([&] { at.say(view::ctgInfoAsText(target)); }));
}

void channels(Place& at, const std::string& mesh) {
  const std::string path = at / mesh;
  COrvMeshTrans_GetCoolingChannelFromElementSurface surface;
  at.say(surface.SetOFEFile(path.c_str()));
  int nodes = 0;
  surface.GetBrisk_STL_NNodeCCL(nodes);
  std::vector<double> x(static_cast<std::size_t>(nodes) + 1), y(x), z(x);
  surface.GetBrisk_STL_CCNodeData(x.data(), y.data(), z.data());
  at.sayAll(x.data(), nodes);

  COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode map;
  map.SetDebugMode(true);
  at.say(map.SetOFEFile(path.c_str()), map.GetCCSurfNodeNumber());
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV result;
  result.SetOFEFile(path.c_str());
  result.SetInputNode(nodes, x.data(), y.data(), z.data());
  result.SetInputNodeResult(y.data());
  std::vector<int> kept(x.size());
  result.GetMapOFENodeID(kept.data());
  at.sayAll(kept.data(), nodes);
}

void view(Place& at, const std::string& mesh) {
  const std::string path = at / mesh;
  const auto done = view::exportVtu(path, path + ".vtu");
  at.say(done.cells, done.surfacePath, view::fileInfoAsText(view::readFileInfo(path)));
  view::dumpJsonFile(path, path + ".json");
  view::loadJsonFile(path + ".json", path + ".again");
  at.say(check::reportAsJson(check::checkFile(path, std::nullopt)));
}

void sensors(Place& at) {
  const std::string mesh = at / "mold.ofe", history = at / "history";
  COrvMeshTransfer_SensorMapping maps;
  maps.SetMeshFilePath_Std(mesh.c_str(), 0, 0);
  for (int i = 1; i <= maps.GetTotalSensorNumber_Ori(); ++i)
    at.say(maps.GetSensorMappingGlobalID(SensorMap_Old2New, i));
  maps.SetMeshFilePath_Fast(mesh.c_str(), 1);
  writeBytes(history,
             "9\n[HEADER] text\n[SENSOR INFO]\nnumbers\n1\n0\n0\n1\n0\n0\n1  1      1 2 3\n4  2      1 2 3\n"
             "[HISTORY DATA]\n0.5\n35.00\n36.00\n\n[EOF]\n");
  COrvMeshTransfer_SensorFile file;
  file.TransferSensorFile_SNC(history.c_str(), mesh.c_str(), 0, 0);
  COrvSensorMappingTools lookup;
  at.say(maps.GetTotalSensorNumber_Ori(), file.GetErrorMessage_Link(), lookup.SetMeshFilePath(mesh.c_str()),
         lookup.GetSensorDisplayID(3));
}

void heat(Place& at) {
  std::ostringstream table("% Nodes: 400\n% x y z q\n", std::ios::ate);
  for (int i = 1; i <= 400; ++i)
    table << 0.001 * (i * 7 % 100) << ' ' << 0.001 * (i * 3 % 100) << " 0 " << i << '\n';
  writeBytes(at / "heat", table.str());
  COrvCool_Electromagnetic_HeatSource source;
  at.say(source.SetStep1_InputParmeter((at / "heat").c_str(), 1, 2));
  std::vector<double> x(501), y(501), z(501);
  for (std::size_t i = 1; i <= 500; ++i) {
    x[i] = static_cast<double>(i * 11 % 101) / 10;
    y[i] = static_cast<double>(i * 13 % 103) / 10;
  }
  at.say(source.SetStep2_InputMesh(500, x.data(), y.data(), z.data()));
  at.sayAll(source.GetOutputHeatSourceValue_Link(), 500);
}

void tools(Place& at) {
  double x[] = {0, 0, 1, 0, 0}, y[] = {0, 0, 0, 1, 0}, z[] = {0, 0, 0, 0, 1};
  int count[] = {0, 4}, material[] = {0, 3}, nodes[] = {0, 1, 2, 3, 4};
  int* elements[] = {nullptr, nodes};
  CWriteMeshDataAsOFE writer;
  writer.SetMesh(4, x, y, z, 1, count, elements, material);
  int first[] = {2, 1, 2}, second[] = {1, 2};
  int* faces[] = {nullptr, first, second};
  int* relations[] = {nullptr, nullptr, nullptr};
  COrvTransfer20to02 inverse;
  CCheckBoundingBox box;
  box.SetMaxBoundingBox(1, 1, 1);
  box.SetMinBoundingBox(0, 0, 0);
  at.say(writer.WriteOFE((at / "plastic").c_str()), inverse.Get02From20(0, faces, 2, relations),
         box.IfInBoundingBox(0.5, 0.5, 0.5));
}

// Also the texts of failed calls are each thread's own.
void refusals(Place& at) {
  const std::string target = at / "none/file";
  for (std::string source : {at / "none", at / ""}) {
    COrvMeshFormatTransfer object;
    object.SetStopOnRefusedSource(true);
    runVariant(object, "moldbase", source, target);
    DMPIO_Manipulator_C dump;
    dump.beginReading(source.c_str(), nullptr);
    COrvCool_Electromagnetic_HeatSource heat;
    heat.SetStep1_InputParmeter(source.c_str(), 0, 1);
    at.say(object.GetErrorMessage_Link(), dump.getErrorText(), heat.GetErrorMessage_Link(),
           failureOf([&] { view::loadJsonFile(source, target); }), failureOf([&] {
             importing::importMesh({source, target, "", 1, {}, false});
           }),
           failureOf([&] { view::ctgInfoAsText(source); }));
  }
  at.say(failureOf([&] { view::dumpJsonFile(at / "odd.ofe", target); }));
}

Files doAllJobs(const std::string& folder) {
  Place at(folder);
  importMold(at);
  view::loadJson(mold().dump(), "odd", at / "odd.ofe");
  for (const std::string mesh : {"mold.ofe", "odd.ofe"})
    for (const auto job : {transfer, exportCtg, channels, view}) job(at, mesh);
  for (const auto job : {sensors, heat, tools, refusals}) job(at);
  return at.files();
}

// work(i) in each thread, all beginning at once.
void inParallel(const auto& work) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      work(i);
    });
  for (std::thread& thread : threads) thread.join();
}

TEST(Threads, EachGetsWhatOneAloneGets) {
  const TempDir dir;
  fs::current_path(dir.path());        // the log of transfers stands there, one for all threads
  testing::internal::CaptureStdout();  // the console is also one for all
  const Files expected = doAllJobs(dir / "alone");
  std::string wrong[kThreads];
  for (int round = 0; round < kRounds; ++round)
    inParallel([&](int i) {
      const Files files = doAllJobs(dir / std::to_string(i));
      for (const auto& [name, bytes] : expected)
        if (!files.contains(name) || files.at(name) != bytes) wrong[i] += name + " ";
      if (files.size() != expected.size()) wrong[i] += "(number of files)";
    });
  testing::internal::GetCapturedStdout();
  EXPECT_GT(expected.size(), 80U);
  for (const std::string& names : wrong) EXPECT_EQ(names, "");
  EXPECT_FALSE(fs::exists("MeshTranslate.log"));
  fs::current_path("/");
}

// Opening a text file resolves its name in the system's locale, and no other thread notices.
TEST(Threads, TheLocaleOfTheProcessStays) {
  const TempDir dir;
  ASSERT_EQ(::setenv("LC_ALL", "C.UTF-8", 1), 0);
  std::atomic<int> changed{0};
  inParallel([&](int i) {
    const std::string path = dir / std::to_string(i);
    for (int n = 0; n < 200; ++n) {
      std::ofstream out;
      OpenTextStreamWithRetry(out, path.c_str());
      changed += std::locale().name() != "C";
    }
  });
  EXPECT_EQ(changed, 0);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace orvmesh::test
