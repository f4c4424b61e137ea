#pragma once

#include "orvmesh/export.h"

// Turns the nodes of faces ("20") into the faces of nodes ("02"), nine faces per node at the most.
class ORVMESH_API COrvTransfer20to02 {
 public:
  COrvTransfer20to02();
  virtual ~COrvTransfer20to02();
  COrvTransfer20to02(const COrvTransfer20to02&);
  COrvTransfer20to02& operator=(const COrvTransfer20to02&);

  // faceNodes  rows 1..nFace, the caller's: entry 0 the number m of nodes of the face, entries 1..m the nodes
  // nodeFaces  rows 1..nNode of at least ten ints, the caller's: entry 0 receives the number k of faces (0 to
  //            9), entries 1..k the first k faces that use the node, ascending; the rest stays as it is
  // A node that stands twice in a face has that face once. Nodes outside 1..nNode and rows that are null are
  // passed over; a count below 0 is 0. Returns 1; 0, and nothing is filled, when memory is short.
  int Get02From20(int nFace, int** faceNodes, int nNode, int** nodeFaces);
};
