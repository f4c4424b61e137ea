#pragma once

#include <memory>
#include <string>

#include "orvmesh/cpoint3d.h"
#include "orvmesh/export.h"

namespace orvmesh::channel {
struct ChannelSurface;
}

// The surface mesh of the cooling channels of an OFE file: the faces between mold base and channel (interface
// 3) and those of channel ends and hoses (interface 4), the nodes that they use, and marker points where
// coolant and heaters begin and end.
//
// Nodes are numbered from 1 in the order of their numbers in the file, faces from 1 in the order of the file.
// In what follows N is the number of nodes (GetBrisk_STL_NNodeCCL), F that of faces (GetBrisk_STL_NElemtCCL).
// Arrays of the caller have entries 1..N or 1..F; their entry 0 is left as it is. Before the first file, all
// numbers are 0. Nothing throws. Copies of an object share what was read, and each may read another file.
class ORVMESH_API COrvMeshTrans_GetCoolingChannelFromElementSurface {
 public:
  COrvMeshTrans_GetCoolingChannelFromElementSurface();
  virtual ~COrvMeshTrans_GetCoolingChannelFromElementSurface();
  COrvMeshTrans_GetCoolingChannelFromElementSurface(const COrvMeshTrans_GetCoolingChannelFromElementSurface&);
  COrvMeshTrans_GetCoolingChannelFromElementSurface& operator=(
      const COrvMeshTrans_GetCoolingChannelFromElementSurface&);

  // Reads a file. 1; else the reader's result, which is 0 or below, and a line on standard output: everything
  // is then as it was. So it is when the file turns out damaged or memory is short (0). Faces beyond the
  // header's count are told of and kept.
  int SetOFEFile(const char* path);

  void GetBrisk_STL_NNodeCCL(int& n) const;
  void GetBrisk_STL_NElemtCCL(int& n) const;
  // Channel groups, as the header counts them; group numbers of faces may be higher.
  void GetBrisk_STL_NCCGroups(int& n) const;

  // Coordinates, the file's times its scale factor, in N + 1 entries of the caller. The second form does
  // nothing when a pointer is null.
  void GetBrisk_STL_CCNodeData(CPoint3d* pts) const;
  void GetBrisk_STL_CCNodeData(double* x, double* y, double* z) const;

  // F + 1 rows of the caller, six ints each (counted from 0): 3 or 4 vertices, four node numbers (a
  // triangle's third twice), group. A node that the file does not have is 0.
  void GetBrisk_STL_CCLElemData(int** elems) const;
  // Group and kind of each face, F + 1 entries each; does nothing when a pointer is null. Kinds: 1 coolant
  // and 2 heater by the face's own code, 0 another code, 3 a hose.
  void GetBrisk_STL_CCLElemData(int* group, int* kind) const;

  // Leaves the array as it is; the nodes' numbers in the file are not handed out.
  void GetBrisk_CCSurfNode2GlobalNodeID(int* ids) const;

  int GetBrisk_STL_MarkerPoint_TotalPointNumber() const;
  // The object's own arrays of the marker points, entries 1..count: kind (2 coolant inlet, 3 coolant outlet,
  // 4 heater inlet), place as in the file (without its scale factor), channel diameter there. Valid until the
  // object and all its copies are destroyed or have read another file. Without marker points the references
  // stay as they are.
  void GetBrisk_STL_MarkerPoint_PointCoordinate_Link(int*& kind, double*& x, double*& y, double*& z,
                                                     double*& diameter) const;

  // Additional operation: why the last file was refused, one line that names it; empty when it was read.
  // Valid until the next SetOFEFile.
  const char* GetErrorMessage_Link() const;

 protected:
  int m_Verbose = 0;  // other than 0: progress on standard output; no operation sets it

 private:
  std::shared_ptr<orvmesh::channel::ChannelSurface> m_Surface;
  std::string m_ErrorMessage;
};
