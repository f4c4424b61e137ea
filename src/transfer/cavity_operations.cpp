#include <orvmesh/mesh_format_transfer.h>

#include <new>
#include <stdexcept>

#include "transfer/ofv/cavity_record.h"

using namespace orvmesh::transfer;

namespace {

// The frame of every operation; the short texts need no memory of their own.
int answer(const char* operation, std::string& message, const auto& work) {
  message.clear();
  try {
    const CavityFault fault = work(cavityRecord());
    if (fault.result == CavityResult_NotWritten)
      message = fault.text;
    else if (fault.result != CavityResult_Done)
      message = std::string(operation) + ": " + fault.text;
    return fault.result;
  } catch (const std::bad_alloc&) {
    message = "out of memory";
  } catch (const std::length_error&) {
    message = "out of memory";
  }
  return CavityResult_OutOfMemory;
}

}  // namespace

int COrvMeshFormatTransfer::SetCTG2OFVFilePath(const char* path) {
  return answer("SetCTG2OFVFilePath", m_ErrorMessage, [&](auto& record) { return record.setPath(path); });
}

int COrvMeshFormatTransfer::SetCTGMeshInfo(int nodeCount, int faceCount, long long faceNodeCount,
                                           int cellCount, int cavityCount, int inletCount) {
  return answer("SetCTGMeshInfo", m_ErrorMessage, [&](auto& record) {
    return record.setCounts({nodeCount, faceCount, cellCount, cavityCount, inletCount, faceNodeCount});
  });
}

int COrvMeshFormatTransfer::SetCTGCavityInfo(const int* number, const int* kind) {
  return answer("SetCTGCavityInfo", m_ErrorMessage,
                [&](auto& record) { return record.setCavities(number, kind); });
}

int COrvMeshFormatTransfer::SetCTGCavityCellInfo(const int* cavity) {
  return answer("SetCTGCavityCellInfo", m_ErrorMessage,
                [&](auto& record) { return record.setCells(cavity); });
}

int COrvMeshFormatTransfer::SetCTGCavityNodeInfo(const double* x, const double* y, const double* z) {
  return answer("SetCTGCavityNodeInfo", m_ErrorMessage,
                [&](auto& record) { return record.setNodes(x, y, z); });
}

int COrvMeshFormatTransfer::SetCTGCavityFaceInfo(const int* nodeCount, const int* nodes, const int* owner,
                                                 const int* neighbour) {
  return answer("SetCTGCavityFaceInfo", m_ErrorMessage,
                [&](auto& record) { return record.setFaces(nodeCount, nodes, owner, neighbour); });
}

int COrvMeshFormatTransfer::SetInletID2ChannelGrpID(const int* inletID, const int* channelGroup) {
  return answer("SetInletID2ChannelGrpID", m_ErrorMessage,
                [&](auto& record) { return record.setInlets(inletID, channelGroup); });
}

int COrvMeshFormatTransfer::GetTransOFV() {
  return answer("GetTransOFV", m_ErrorMessage, [](auto& record) { return record.write(false); });
}

int COrvMeshFormatTransfer::GetTransOFV_OnlyChannel() {
  return answer("GetTransOFV_OnlyChannel", m_ErrorMessage, [](auto& record) { return record.write(true); });
}

void COrvMeshFormatTransfer::FreeMemory() {
  m_ErrorMessage.clear();
  freeCavityRecord();
}
