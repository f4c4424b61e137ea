#pragma once

#include <memory>
#include <string>

#include "orvmesh/export.h"

namespace orvmesh::channel {
struct SurfaceNodeMap;
}

// Finds for every node of the cooling channels' surface (interfaces 3 and 4 of an OFE file) a node of the
// mold base: itself, when it lies on a face of interface 3 with an end code other than 0, else the nearest
// node of the mold-base elements, of equally near ones the lowest.
//
// Nothing throws. Copies of an object share the map, and each may read another file.
class ORVMESH_API COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode {
 public:
  COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode();
  ~COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode();
  COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode(const COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode&);
  COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode& operator=(
      const COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode&);

  // With debug mode on, SetOFEFile tells its progress on standard output and draws a line from each searched
  // node to the one it was mapped to into path + ".CCNodeToMBNode.stl" (no file when there is none to draw).
  // A node that finds none is drawn to the origin.
  void SetDebugMode(bool on);
  // Reads a file and makes the map. 1; else the reader's result, which is 0 or below, and a line on standard
  // output: everything is then as it was. So it is when the file turns out damaged or memory is short (0). A
  // node that finds none is told of on standard output.
  int SetOFEFile(const char* path);

  // Nodes of the channels' surface; 0 before the first file.
  int GetCCSurfNodeNumber() const;
  // Both leave the array as it is; the numbers stay inside.
  void GetCCSurfNodeID(int* ids) const;
  void GetCCSurfNodeIDMapToGlobalNodeIDInMoldbase_Link(int* ids) const;

  // Additional operation: why the last file was refused, one line that names it; empty when it was read.
  // Valid until the next SetOFEFile.
  const char* GetErrorMessage_Link() const;

 private:
  bool m_Debug = false;
  std::shared_ptr<const orvmesh::channel::SurfaceNodeMap> m_Map;
  std::string m_ErrorMessage;
};
