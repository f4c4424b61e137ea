#pragma once

#include <memory>

#include "orvmesh/export.h"

// One cooling-related list of nodes and surfaces.
//
// Arrays hold entries 1..count (entry 0 is unused), that is count + 1 values, zeroed when created. Copies of
// an object share its arrays. A caller may put arrays of its own into any place before Create...Memory; they
// must then hold count + 1 values.
class ORVMESH_API COrvCCData {
 public:
  // Creates every node array that is still missing, with m_Dim + 1 entries. Arrays that exist stay as they
  // are, unless an earlier call made them for fewer nodes: then they are made anew.
  void CreateNodeMemory();
  // The same for the surface arrays, with m_NSurface + 1 entries.
  void CreateSurfaceMemory();

  int m_Dim = 0;                                 // number of nodes
  std::shared_ptr<int[]> m_NodeID;               // node numbers, 1-based; filled by the transfer object
  std::shared_ptr<double[]> m_NodeData[3];       // the caller's; never filled here
  std::shared_ptr<double[]> m_NodeDataExtra;     // the caller's
  int m_NSurface = 0;                            // number of surfaces
  std::shared_ptr<int[]> m_SurfaceID;            // surface numbers, 1-based; the caller's
  std::shared_ptr<double[]> m_SurfaceData[3];    // the caller's
  std::shared_ptr<double[]> m_SurfaceDataExtra;  // the caller's

 private:
  // What Create...Memory made last for one place, and for how many entries.
  struct Made {
    const void* array = nullptr;
    int count = 0;
  };
  template <class T>
  static void create(std::shared_ptr<T[]>& array, int count, Made& made);

  Made m_NodeMade[5];
  Made m_SurfaceMade[5];
};

// The four node lists of a combined mesh and its group counts.
class ORVMESH_API COrvCCDataForSolver {
 public:
  COrvCCData m_SurfaceCCData;      // nodes of type 9; comes out empty
  COrvCCData m_SurfaceHRData;      // type 10: nodes of heater channel elements on the mold
  COrvCCData m_SurfaceHRAirData;   // type 11; comes out empty
  COrvCCData m_SurfaceHeaterData;  // type 12: nodes of heater faces
  int m_NGroupCoolant = 0;
  int m_NGroupHeater = 0;
};

// A caller's container for the results of a part-insert transfer; nothing in this library fills it. Copies
// share the arrays, which are 1-based as above.
class ORVMESH_API COrvPIDataForSolver {
 public:
  int m_TotalNodeNumber = 0;
  int m_NnodeContactPartAndPI = 0;
  std::shared_ptr<int[]> m_PIGlobalNodeType;  // m_TotalNodeNumber + 1 entries
  std::shared_ptr<int[]> m_PPINodeID;         // m_NnodeContactPartAndPI + 1 entries
  std::shared_ptr<int[]> m_PPIElemMaterial;   // elements of the combined part + 1 entries
  int m_MeshBlockSize = 0;
  std::shared_ptr<int[]> m_MoldBlock2Mat;  // m_MeshBlockSize + 1 entries
};
