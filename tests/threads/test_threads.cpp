#include <fcntl.h>
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
#include <unistd.h>

#include <barrier>
#include <filesystem>
#include <map>
#include <thread>

#include "base/descriptor.h"
#include "check/report.h"
#include "dmpio/dump_json.h"
#include "dmpio/number_maps.h"
#include "import/brick_mold.h"
#include "import/import.h"
#include "platform/cofedata.h"
#include "platform/text_stream.h"
#include "support/failure_of.h"
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
const char* const kVariants[] = {"channels", "hot-runner",   "stream-line",
                                 "moldbase", "part-inserts", "part-inserts-channels"};

// The console is one for all threads: what they print is mixed and of no interest here.
class SilentConsole {
 public:
  SilentConsole() : kept_(::dup(STDOUT_FILENO)) {
    const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    ::dup2(nowhere.number(), STDOUT_FILENO);
  }
  ~SilentConsole() {
    std::cout.flush();
    (void)std::fflush(stdout);
    ::dup2(kept_.number(), STDOUT_FILENO);
  }
  SilentConsole(const SilentConsole&) = delete;
  SilentConsole& operator=(const SilentConsole&) = delete;

 private:
  Descriptor kept_;
};

// All jobs of one thread, in a folder of its own.
class Jobs {
 public:
  explicit Jobs(std::string folder) : folder_(std::move(folder)) { fs::create_directory(folder_); }

  // Every file of the folder, and the answers; the folder's name is left out where it stands in a text.
  Files run();

 private:
  std::string path(const std::string& name) const { return folder_ + "/" + name; }
  void say(const std::string& text) { answers_ += text + "\n"; }
  template <class Value>
  void sayAll(const Value* values, int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += std::to_string(values[i]) + " ";
    say(text);
  }

  void prepare();
  void transfer(const std::string& mesh, const std::string& variant);
  void recordNumbers(const COrvMeshFormatTransfer& object, const std::string& name);
  void exportCtg(const std::string& mesh);
  void sensors();
  void channels(const std::string& mesh);
  void heat();
  void tools();
  void view(const std::string& mesh);
  void refusals();

  std::string folder_;
  std::string answers_;
};

void Jobs::prepare() {
  BrickMold mold(
      "MMMMMMMM/MPPPIPPM/MPPIIPPM/CCCCCCCC/MMMMMMMM/hhhhhhhh "
      "MMMMMMMM/HHPPIPPM/MPPPPPPM/NNNNNNNN/DDDDDDDD/MMMMMMMM "
      "MMMMMMMM/MMMMMMMM/MMMMMMMM/NNNNNNNN/MMMMMMMM/MMMMMMMM",
      Cells::tetrahedra);
  mold.addPoint("sensor:1:1", 1.5, 1.25, 0.5);
  mold.addPoint("sensor:4:2", 0.5, 0.25, 0.5);
  writeFile(path("mold.msh"), writeMsh(mold.mesh, Encoding::binary41));
  fs::last_write_time(path("mold.msh"), fs::file_time_type{});  // which the mesh gets as its date
  const auto report = importing::importMesh({path("mold.msh"), path("mold.ofe"), "", 1, {}, false});
  say(importing::reportText(report) + importing::reportJson(report));
  view::loadJson(moldJson(), "odd", path("odd.ofe"));
  writeFile(path("history"),
            "9\n[HEADER] text\n[SENSOR INFO]\nnumbers\n1\n0\n0\n1\n0\n0\n1  1      1 2 3\n4  2      1 2 3\n"
            "[HISTORY DATA]\n0.5\n35.00\n36.00\n\n[EOF]\n");
}

void Jobs::recordNumbers(const COrvMeshFormatTransfer& object, const std::string& name) {
  const auto numbers = [&](TargetNumbering of) {
    int count = 0;
    const int* const values = object.GetTargetNumbers_Link(of, count);
    return std::span(values + 1, static_cast<std::size_t>(count));
  };
  int ends = 0;
  const int* const end = object.GetChannelEnds_Link(ends);
  const dmpio::NumberMaps maps{numbers(TargetNumbering_Node),
                               numbers(TargetNumbering_ElementPlastic),
                               numbers(TargetNumbering_ElementMoldBase),
                               numbers(TargetNumbering_ElementCoolChannel),
                               numbers(TargetNumbering_ElementSurface),
                               numbers(TargetNumbering_Sensor),
                               {end + 1, static_cast<std::size_t>(ends)}};
  for (const int version : {1023, 2004}) {
    const std::string dump = path(name + "." + std::to_string(version));
    dmpio::writeNumberMaps(maps, dump, version);
    dmpio::dumpAsJson(dump, [&](std::string_view text) { answers_ += text; });
    DMPIO_Manipulator_C converter;
    converter.convert(dump.c_str(), (dump + "c").c_str(), version == 1023 ? 2003 : 1022);
    say(converter.getErrorText());
  }
}

void Jobs::transfer(const std::string& mesh, const std::string& variant) {
  COrvMeshFormatTransfer object;
  object.SetKeepTargetNumbers(true);
  object.SetSTLDiagnostics(true);
  object.SetDebugLog(1);
  const std::string target = mesh + "." + variant;
  say(std::to_string(runVariant(object, variant, path(mesh), path(target))));
  say(object.GetErrorMessage_Link());
  say(object.GetDropped_Link());
  std::vector<int> types(static_cast<std::size_t>(object.GetTotalNodeNumber()) + 1);
  object.GetPIGloalNodeType(types.data());
  sayAll(types.data(), object.GetTotalNodeNumber());
  recordNumbers(object, target);
  say(check::reportAsText(check::checkFile(path(target), std::nullopt)));
}

void Jobs::exportCtg(const std::string& mesh) {
  COrvMeshFormatTransfer object;
  std::string source = path(mesh), target = path(mesh + ".ctg");
  object.TransSolidOFEtoCTG(source.data(), target.data());
  say(object.GetErrorMessage_Link());
  say(failureOf([&] { say(view::ctgInfoAsText(target)); }));
}

void Jobs::sensors() {
  COrvMeshTransfer_SensorMapping maps;
  maps.SetMeshFilePath_Std(path("mold.ofe").c_str(), 0, 0);
  for (int i = 1; i <= maps.GetTotalSensorNumber_Ori(); ++i)
    say(std::to_string(maps.GetSensorMappingGlobalID(SensorMap_Old2New, i)));
  maps.SetMeshFilePath_Fast(path("mold.ofe").c_str(), 1);
  say(std::to_string(maps.GetTotalSensorNumber_Ori()));
  COrvMeshTransfer_SensorFile file;
  file.TransferSensorFile_SNC(path("history").c_str(), path("mold.ofe").c_str(), 0, 0);
  say(file.GetErrorMessage_Link());
  COrvSensorMappingTools lookup;
  say(std::to_string(lookup.SetMeshFilePath(path("mold.ofe").c_str())));
  say(std::to_string(lookup.GetSensorDisplayID(3)));
}

void Jobs::channels(const std::string& mesh) {
  COrvMeshTrans_GetCoolingChannelFromElementSurface surface;
  say(std::to_string(surface.SetOFEFile(path(mesh).c_str())));
  int nodes = 0, faces = 0;
  surface.GetBrisk_STL_NNodeCCL(nodes);
  surface.GetBrisk_STL_NElemtCCL(faces);
  std::vector<double> x(static_cast<std::size_t>(nodes) + 1), y(x), z(x), back(x);
  surface.GetBrisk_STL_CCNodeData(x.data(), y.data(), z.data());
  sayAll(x.data(), nodes);
  std::vector<int> group(static_cast<std::size_t>(faces) + 1), kind(group);
  surface.GetBrisk_STL_CCLElemData(group.data(), kind.data());
  sayAll(group.data(), faces);

  COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode map;
  map.SetDebugMode(true);
  say(std::to_string(map.SetOFEFile(path(mesh).c_str())) + " " + std::to_string(map.GetCCSurfNodeNumber()));
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV result;
  result.SetOFEFile(path(mesh).c_str());
  result.SetInputNode(nodes, x.data(), y.data(), z.data());
  result.SetInputNodeResult(y.data());
  std::vector<int> kept(static_cast<std::size_t>(nodes) + 1);
  result.GetMapOFENodeID(kept.data());
  sayAll(kept.data(), nodes);
}

void Jobs::heat() {
  std::string table = "% Nodes: 400\n% x y z q\n";
  for (int i = 1; i <= 400; ++i)
    table += "0.0" + std::to_string(i * 7 % 100) + " 0.0" + std::to_string(i * 3 % 100) + " 0 " +
             std::to_string(i) + "\n";
  writeFile(path("heat"), table);
  COrvCool_Electromagnetic_HeatSource source;
  say(std::to_string(source.SetStep1_InputParmeter(path("heat").c_str(), 1, 2)));
  std::vector<double> x(501), y(501), z(501);
  for (std::size_t i = 1; i <= 500; ++i) {
    x[i] = static_cast<double>(i * 11 % 101) / 10;
    y[i] = static_cast<double>(i * 13 % 103) / 10;
  }
  say(std::to_string(source.SetStep2_InputMesh(500, x.data(), y.data(), z.data())));
  sayAll(source.GetOutputHeatSourceValue_Link(), 500);
}

void Jobs::tools() {
  double x[] = {0, 0, 1, 0, 0}, y[] = {0, 0, 0, 1, 0}, z[] = {0, 0, 0, 0, 1};
  int count[] = {0, 4}, material[] = {0, 3}, nodes[] = {0, 1, 2, 3, 4};
  int* elements[] = {nullptr, nodes};
  CWriteMeshDataAsOFE writer;
  writer.SetMesh(4, x, y, z, 1, count, elements, material);
  say(std::to_string(writer.WriteOFE(path("plastic").c_str())));
  int first[] = {2, 1, 2}, second[] = {1, 2};
  int* faces[] = {nullptr, first, second};
  int* relations[] = {nullptr, nullptr, nullptr};
  COrvTransfer20to02 inverse;
  say(std::to_string(inverse.Get02From20(0, faces, 2, relations)));
  CCheckBoundingBox box;
  box.SetMaxBoundingBox(1, 1, 1);
  box.SetMinBoundingBox(0, 0, 0);
  say(std::to_string(box.IfInBoundingBox(0.5, 0.5, 0.5)));
}

void Jobs::view(const std::string& mesh) {
  const auto done = view::exportVtu(path(mesh), path(mesh + ".vtu"));
  say(std::to_string(done.cells) + done.surfacePath);
  say(view::fileInfoAsText(view::readFileInfo(path(mesh))));
  view::dumpJsonFile(path(mesh), path(mesh + ".json"));
  view::loadJsonFile(path(mesh + ".json"), path(mesh + ".again"));
  say(check::reportAsJson(check::checkFile(path(mesh), std::nullopt)));
}

// Also the texts of failed calls are each thread's own.
void Jobs::refusals() {
  const std::string none = path("none"), folder = folder_, inNone = path("none/file");
  for (const std::string& file : {none, folder}) {
    std::string source = file, target = inNone;
    COrvMeshFormatTransfer object;
    object.SetStopOnRefusedSource(true);
    runVariant(object, "moldbase", source, target);
    say(object.GetErrorMessage_Link());
    object.TransSolidOFEtoCTG(source.data(), target.data());
    say(object.GetErrorMessage_Link());
    DMPIO_Manipulator_C dump;
    dump.beginReading(file.c_str(), nullptr);
    say(dump.getErrorText());
    say(failureOf([&] { view::loadJsonFile(file, inNone); }));
    say(failureOf([&] { importing::importMesh({file, inNone, "", 1, {}, false}); }));
    say(failureOf([&] { view::ctgInfoAsText(file); }));
    COrvCool_Electromagnetic_HeatSource source1;
    source1.SetStep1_InputParmeter(file.c_str(), 0, 1);
    say(source1.GetErrorMessage_Link());
  }
  say(failureOf([&] { view::dumpJsonFile(path("odd.ofe"), inNone); }));
}

Files Jobs::run() {
  answers_.clear();
  prepare();
  for (const std::string mesh : {"mold.ofe", "odd.ofe"}) {
    for (const char* variant : kVariants) transfer(mesh, variant);
    exportCtg(mesh);
    channels(mesh);
    view(mesh);
  }
  sensors();
  heat();
  tools();
  refusals();
  Files files{{"the answers", answers_}};
  for (const auto& entry : fs::directory_iterator(folder_))
    files[entry.path().filename()] = readFile(entry.path());
  for (auto& [name, bytes] : files)
    for (auto at = bytes.find(folder_); at != bytes.npos; at = bytes.find(folder_, at))
      bytes.erase(at, folder_.size());
  return files;
}

class Threads : public ::testing::Test {
 protected:
  // The log of transfers stands in the current folder, which is one for all threads.
  void SetUp() override { fs::current_path(dir_.path()); }
  void TearDown() override { fs::current_path("/"); }

  // work(i) in each thread, all beginning at once.
  template <class Work>
  static void inParallel(Work work) {
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([&, i] {
        start.arrive_and_wait();
        work(i);
      });
    for (std::thread& thread : threads) thread.join();
  }

  TempDir dir_;
};

TEST_F(Threads, EachGetsWhatOneAloneGets) {
  Files expected;
  std::string wrong[kThreads];
  {
    const SilentConsole silent;
    expected = Jobs(dir_ / "alone").run();
    for (int round = 0; round < kRounds; ++round)
      inParallel([&](int i) {
        const Files files = Jobs(dir_ / std::to_string(i)).run();
        for (const auto& [name, bytes] : expected)
          if (!files.contains(name) || files.at(name) != bytes) wrong[i] += name + " ";
        if (files.size() != expected.size()) wrong[i] += "(number of files)";
      });
  }
  EXPECT_GT(expected.size(), 80U);
  for (const std::string& names : wrong) EXPECT_EQ(names, "");
  EXPECT_FALSE(fs::exists("MeshTranslate.log"));
  if (std::getenv("ORVMESH_LONG") != nullptr) std::cout << expected.at("the answers");
}

// Opening a text file resolves its name in the system's locale, and no other thread notices.
TEST_F(Threads, TheLocaleOfTheProcessStays) {
  ASSERT_EQ(::setenv("LC_ALL", "C.UTF-8", 1), 0);
  std::atomic<int> changed{0};
  inParallel([&](int i) {
    const std::string path = dir_ / std::to_string(i);
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
