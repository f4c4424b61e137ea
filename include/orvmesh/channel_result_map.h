#pragma once

#include <memory>
#include <string>

#include "orvmesh/export.h"

namespace orvmesh::channel {
struct KeptNodes;
}

// Carries a nodal result of another mesh onto the nodes of an OFE file, each from the nearest input node (of
// equally near ones the lowest). Kept nodes are those that volume elements use, numbered from 1 in the order
// of their numbers in the file: from the first unused node on, the two numbers differ.
//
// Calls go in the order SetOFEFile, SetInputNode, SetInputNodeResult (as often as there are results). In what
// follows K is the number of kept nodes, which is at most that of the file's nodes, and n that of input
// nodes. Arrays are 1-based and the caller's; entry 0 is neither read nor written.
//
// Nothing throws; an operation returns 0 where memory is short. Copies of an object share all arrays: a
// result set in one is seen in the other, until either of them reads another file or sets other input nodes.
class ORVMESH_API COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV {
 public:
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV();
  ~COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV();
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV(
      const COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV&);
  COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV& operator=(
      const COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV&);

  // Reads the file, with the log beside it (".log" in place of the path's last four characters). 1, also for
  // a refused file: that has no nodes to keep. What input nodes were set before is forgotten.
  int SetOFEFile(const char* path);
  // x, y, z: n + 1 entries, in the model's units (the file's times its scale factor). Nodes with a coordinate
  // that is not finite are never found. A negative n or a null pointer counts as no input nodes. 1.
  int SetInputNode(int n, double* x, double* y, double* z);
  // values: n + 1 entries. Sets the result of every kept node; one that found no input node keeps 0. A null
  // pointer changes nothing. 1.
  int SetInputNodeResult(double* values);

  // out: n + 1 entries; the kept node (1..K, no node number of the file) that each input node went to, the
  // highest of several, 0 for none. A null pointer is passed over. 1.
  int GetMapOFENodeID(int* out) const;
  // out: K + 1 entries; the result on each kept node. 1; -1 when out is null.
  int GetMapOFENodeResult(double* out) const;

  // Additional operation: why the last file was refused, one line that names it; empty when it was read.
  // Valid until the next SetOFEFile.
  const char* GetErrorMessage_Link() const;

 private:
  std::string m_OFEPath;
  std::shared_ptr<const orvmesh::channel::KeptNodes> m_Kept;
  int m_NInput = 0;
  std::shared_ptr<int[]> m_InputToKept;  // m_NInput + 1 entries
  std::shared_ptr<int[]> m_KeptToInput;  // K + 1 entries
  std::shared_ptr<double[]> m_Result;    // K + 1 entries
  std::string m_ErrorMessage;
};
