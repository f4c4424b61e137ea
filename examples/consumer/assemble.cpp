// Joins part, inserts and channels of a component mesh and tells what an analysis program needs to know of
// the result: node types, and where each of its sensors went.
//
// With pkg-config: c++ -std=c++17 assemble.cpp $(pkg-config --cflags --libs orvmesh) -o assemble
#include <orvmesh/mesh_format_transfer.h>
#include <orvmesh/sensor_mapping.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: assemble MOLD.ofe SOLVER.ofe\n");
    return 2;
  }
  COrvMeshFormatTransfer transfer;
  transfer.SetStopOnRefusedSource(true);
  transfer.SetKeepTargetNumbers(true);
  const int result = transfer.TransferMesh_CombinePIAndChannel(argv[1], argv[2]);
  const char* const error = transfer.GetErrorMessage_Link();
  if (*error != '\0' || result < 1) {
    std::fprintf(stderr, "assemble: %s\n", *error != '\0' ? error : "nothing to join");
    return 1;
  }

  std::vector<int> types(static_cast<std::size_t>(transfer.GetTotalNodeNumber()) + 1);
  transfer.GetPIGloalNodeType(types.data());
  std::map<int, int> nodesOfType;
  for (std::size_t n = 1; n < types.size(); ++n) ++nodesOfType[types[n]];
  for (const auto& [type, nodes] : nodesOfType) std::printf("node type %d: %d nodes\n", type, nodes);
  std::printf("shared by part and inserts: %d nodes\n", transfer.GetNnodeContactPartAndPI());

  int sensors = 0;
  const int* const numbers = transfer.GetTargetNumbers_Link(TargetNumbering_Sensor, sensors);
  for (int i = 1; i <= sensors; ++i) std::printf("sensor %d is now number %d\n", i, numbers[i]);
  return 0;
}
