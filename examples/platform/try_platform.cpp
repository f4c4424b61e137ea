// The library on another platform: writes a small mold into memory, joins part and insert, exports the mold
// base, makes an OFV file, records the new numbers in a mapping dump and looks at everything that comes out.
#include <orvmesh/channel_result_map.h>
#include <orvmesh/dmpio_manipulator.h>
#include <orvmesh/mesh_format_transfer.h>
#include <orvmesh/sensor_mapping.h>
#include <orvmesh/write_mesh_data_as_ofe.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/cofedata.h"
#include "platform/octree.h"
#include "platform/ofeio.h"
#include "platform/ofv_reader.h"

namespace {

int failures = 0;

template <class A, class B>
void expect(const char* what, const A& found, const B& wanted) {
  const bool same = found == wanted;
  std::printf("%-60s %s\n", what, same ? "as it should be" : "WRONG");
  failures += same ? 0 : 1;
}

// Three cubes in a row along x: part, insert of material 5002, mold base; a sensor in each of the last two.
void writeMold(const char* path) {
  OFEIO_Manipulator file;
  file.header[m_HEADER_Version] = 14001;
  file.header[m_HEADER_NMatI] = 1;
  file.header[m_HEADER_NElemS] = 2;
  file.header[m_HEADER_NSensor4] = 2;
  expect("beginWriting", file.beginWriting(path, 14001, 0), 1);
  for (int x = 0; x < 4; ++x)
    for (const int corner : {0, 1, 2, 3})
      file.writeNodeBlockEntry(static_cast<float>(x), static_cast<float>(corner == 1 || corner == 2),
                               static_cast<float>(corner >= 2));
  const auto cube = [](int x) {
    std::vector<int> nodes;
    for (int n = 1; n <= 8; ++n) nodes.push_back(4 * x + n);
    return nodes;
  };
  file.writeElementPlasticBlockEntry(8, cube(0).data(), 1, 1, 0);
  file.writeElementMoldBaseBlockEntry(8, cube(1).data(), 5002, 0, 0);
  file.writeElementMoldBaseBlockEntry(8, cube(2).data(), 1, 0, 0);
  const int touching[] = {5, 6, 7, 8}, outside[] = {1, 4, 3, 2};
  file.writeElementSurfaceBlockEntry(touching, 1, 1, 0, 0, 1, 0);
  file.writeElementSurfaceBlockEntry(outside, 1, 1, 0, 0, 1, 0);
  for (const int element : {2, 1}) {
    const int ids[] = {element, 0, 0, element};
    file.writeSensorInfoBlockEntry(4, ids, 0.5F + static_cast<float>(element), 0.5F, 0.5F);
  }
  expect("endWriting", file.endWriting(), 1);
}

void joinPartAndInsert(COrvMeshFormatTransfer& transfer, std::string source, std::string target) {
  transfer.SetStopOnRefusedSource(true);
  transfer.SetKeepTargetNumbers(true);
  expect("TransferMesh_CombinePI", transfer.TransferMesh_CombinePI(source.data(), target.data()), 1);
  expect("no error", std::string(transfer.GetErrorMessage_Link()), std::string());
  expect("nodes that part and insert share", transfer.GetNnodeContactPartAndPI(), 4);

  COFEData joined;
  expect("the target is read", joined.ReadDataBin(target.c_str(), nullptr, 0, false), 1);
  expect("plastic elements: part and insert", joined.model().elemP.count(), 2);
  expect("mold elements: the mold base", joined.model().elemM.count(), 1);
  // The face between part and insert is gone, the one between insert and mold base is new.
  expect("surface elements", joined.model().surfaces.count(), 2);

  transfer.TransferMesh_OnlyMoldbase(source.c_str(), target.c_str());
  expect("the mold base alone", joined.ReadDataBin(target.c_str(), nullptr, 0, false), 1);
  expect("its elements, written as plastic ones", joined.model().elemP.count(), 2);
}

// Numbers of the joined mesh's nodes into a dump of the given version and back.
void recordNumbers(COrvMeshFormatTransfer& transfer, std::string source, std::string target,
                   const std::string& dumpPath, int version) {
  transfer.TransferMesh_CombinePI(source.data(), target.data());
  int count = 0;
  const int* const numbers = transfer.GetTargetNumbers_Link(TargetNumbering_Node, count);
  expect("numbers of nodes", count, 16);
  DMPIO_Manipulator_C dump;
  dump.m_HEADER_NNodeMap = count;
  expect("dump: beginWriting", dump.beginWriting(dumpPath.c_str(), version), 1);
  for (int n = 1; n <= count; ++n) dump.writeNodeMapBlockEntry(n, numbers[n]);
  expect("dump: endWriting", dump.endWriting(), 1);

  expect("dump: version", DMPIO_Manipulator_C::getFileVersion(dumpPath.c_str()), version);
  expect("dump: beginReading", dump.beginReading(dumpPath.c_str(), nullptr), 1);
  int same = 0;
  for (int first = 0, second = 0; dump.readNodeMapBlockEntry(first, second) >= 0;)
    same += second == numbers[first] ? 1 : 0;
  expect("dump: entries that come back", same, count);
  dump.endReading();
}

void mapSensors(const std::string& source) {
  COrvMeshTransfer_SensorMapping mapping;
  mapping.SetMeshFilePath_Std(source.c_str(), 0, 0);
  expect("sensors of the mesh", mapping.GetTotalSensorNumber_Ori(), 2);
  // The second one lies in the insert, which becomes a piece of the part.
  expect("type of the insert's sensor", mapping.GetSensorMappingType(SensorMap_Old2New, 2), 1);
  expect("its number", mapping.GetSensorMappingGlobalID(SensorMap_Old2New, 2), 1);
  expect("type of the mold base's sensor", mapping.GetSensorMappingType(SensorMap_Old2New, 1), 4);
}

// A tetrahedron through the small writer.
void writePlastic(const std::string& path) {
  float x[] = {0, 0, 1, 0, 0}, y[] = {0, 0, 0, 1, 0}, z[] = {0, 0, 0, 0, 1};
  unsigned char counts[] = {0, 4};
  int nodes[] = {0, 1, 2, 3, 4};
  CWriteMeshDataAsOFE writer;
  writer.SetMesh(4, x, y, z, 1, counts, nodes, nullptr);
  expect("WriteOFE", writer.WriteOFE(path.c_str()), 0);
}

// The points of an OFV file onto the nodes of that mesh.
void mapResult(const std::string& path, const orvmesh::OFVMesh& mesh) {
  std::vector<double> x{0}, y{0}, z{0}, values{0}, mapped(5);
  for (std::size_t n = 0; n < mesh.xyz.size(); n += 3) {
    x.push_back(mesh.xyz[n]);
    y.push_back(mesh.xyz[n + 1]);
    z.push_back(mesh.xyz[n + 2]);
    values.push_back(static_cast<double>(n) / 3);
  }
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV map;
  map.SetOFEFile(path.c_str());
  map.SetInputNode(mesh.pointCount(), x.data(), y.data(), z.data());
  map.SetInputNodeResult(values.data());
  expect("GetMapOFENodeResult", map.GetMapOFENodeResult(mapped.data()), 1);
  expect("results of the points on the nodes", mapped, std::vector<double>{0, 0, 1, 2, 3});
}

// A tetrahedron as a channel.
void makeOfv(COrvMeshFormatTransfer& transfer, const std::string& path) {
  const double x[] = {0, 0, 1, 0, 0}, y[] = {0, 0, 0, 1, 0}, z[] = {0, 0, 0, 0, 1};
  const int one[] = {0, 1}, channel[] = {0, CavityKind_Channel}, number[] = {0, 7};
  const int counts[] = {0, 3, 3, 3, 3}, nodes[] = {0, 1, 3, 2, 1, 2, 4, 2, 3, 4, 1, 4, 3};
  const int owner[] = {0, 1, 1, 1, 1}, neighbour[] = {0, 0, 0, 0, 0};
  transfer.SetCTG2OFVFilePath(path.c_str());
  transfer.SetCTGMeshInfo(4, 4, 12, 1, 1, 0);
  transfer.SetCTGCavityInfo(number, channel);
  transfer.SetCTGCavityCellInfo(one);
  transfer.SetCTGCavityNodeInfo(x, y, z);
  transfer.SetCTGCavityFaceInfo(counts, nodes, owner, neighbour);
  expect("GetTransOFV_OnlyChannel", transfer.GetTransOFV_OnlyChannel(), static_cast<int>(CavityResult_Done));
  transfer.FreeMemory();
  COrvOFVReader reader;
  expect("the OFV file is read", reader.open(path.c_str()), 1);
  expect("its faces", reader.mesh().faceCount(), 4);
  expect("its cell is closed", orvmesh::faultOfRelations(reader.mesh()), std::string());
  writePlastic("plastic.ofe");
  mapResult("plastic.ofe", reader.mesh());

  COrv3DOctreeMimic octree;
  octree.SetNodeDimension(4);
  for (int i = 1; i <= 4; ++i) octree.SetNodeData(i, x[i], y[i], z[i]);
  octree.Init();
  int ids[3] = {};
  double dists[3] = {};
  expect("two nearest points are found", octree.Search(0.1, 0.9, 0, 2, ids, dists), 2);
  expect("the nearest", ids[1], 3);
  expect("the second", ids[2], 1);
}

}  // namespace

int main() {
  const std::string dump = std::filesystem::temp_directory_path() / "orvmesh-try-platform.dmp";
  COrvMeshFormatTransfer transfer;
  writeMold("mold.ofe");
  joinPartAndInsert(transfer, "mold.ofe", "solver.ofe");
  for (const int version : {1023, 2004}) recordNumbers(transfer, "mold.ofe", "solver.ofe", dump, version);
  std::filesystem::remove(dump);
  mapSensors("mold.ofe");
  makeOfv(transfer, "mold.ofv");
  std::printf("%d wrong\n", failures);
  return failures == 0 ? 0 : 1;
}
