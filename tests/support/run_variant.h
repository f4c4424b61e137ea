#pragma once

#include <orvmesh/mesh_format_transfer.h>

#include <string>

namespace orvmesh::test {

inline constexpr const char* kVariantNames[] = {"channels", "hot-runner",   "stream-line",
                                                "moldbase", "part-inserts", "part-inserts-channels"};

// Runs a variant under its command-line name; the result code (1 for the operation without one).
inline int runVariant(COrvMeshFormatTransfer& transfer, const std::string& name, std::string src,
                      std::string dst) {
  if (name == "channels") {
    transfer.TransferMesh_OnlyChannel(src.data(), dst.data());
    return 1;
  }
  if (name == "hot-runner") return transfer.TransferMesh_OnlyHotRunner(src.data(), dst.data());
  if (name == "stream-line") return transfer.TransferMesh_StreamLineMesh(src.data(), dst.data());
  if (name == "moldbase") return transfer.TransferMesh_OnlyMoldbase(src.c_str(), dst.c_str());
  if (name == "part-inserts") return transfer.TransferMesh_CombinePI(src.data(), dst.data());
  return transfer.TransferMesh_CombinePIAndChannel(src.data(), dst.data());
}

}  // namespace orvmesh::test
