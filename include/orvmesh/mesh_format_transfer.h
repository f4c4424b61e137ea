#pragma once

#include <memory>
#include <string>

#include "orvmesh/cc_data.h"
#include "orvmesh/export.h"

// Node types of the part-insert analysis, as GetPIGloalNodeType hands them out. "On the mold" means that a
// mold element uses the node, too.
enum NodeTypeCode : int {
  NodeType_None = 0,
  NodeType_Part = 1,
  NodeType_Mold = 2,
  NodeType_PartInsert = 3,
  NodeType_PartOnMold = 4,
  NodeType_PartOnPartInsert = 5,
  NodeType_Channel = 7,
  NodeType_Heater = 8,
  NodeType_ChannelOnMold = 9,
  NodeType_HeaterOnMold = 10,
  NodeType_HeaterOnAir = 11,
  NodeType_HeaterFace = 12
};

// What GetTargetNumbers_Link tells the numbers of.
enum TargetNumbering : int {
  TargetNumbering_Node,
  TargetNumbering_ElementPlastic,
  TargetNumbering_ElementMoldBase,
  TargetNumbering_ElementCoolChannel,
  TargetNumbering_ElementSurface,
  TargetNumbering_Sensor
};

// Results of the cavity operations.
enum CavityResult : int {
  CavityResult_Done = 1,
  CavityResult_Refused = 0,      // an array or a count does not fit
  CavityResult_OutOfOrder = -1,  // another operation must be called first
  CavityResult_NotWritten = -2,  // the file could not be written; a file of that name is as it was
  CavityResult_OutOfMemory = -3
};

// What SetCTGCavityInfo tells about a cavity.
enum CavityKind : int { CavityKind_Other = 0, CavityKind_Channel = 1 };

// Assembles the meshes that the cooling solver reads from one component OFE file, in six variants.
//
// Each TransferMesh_ operation takes the source path and the target path, reads the whole source, and writes
// the target, which appears complete or not at all. The source is never changed; it may be the target. Paths
// may have any length and must not be null. While an operation runs, the log "MeshTranslate.log" stands in
// the current directory; it is deleted at the end. Objects in different threads do not disturb each other.
// Operations that run at once in one directory share the log: each that begins empties it, each that ends
// deletes it, and no result depends on it.
//
// No operation reports a bad source or an unwritable target through its result; GetErrorMessage_Link tells.
// Only an allocation failure leaves an operation as an exception. Copies of an object share its result
// arrays.
class ORVMESH_API COrvMeshFormatTransfer {
 public:
  COrvMeshFormatTransfer();

  // Cooling channels alone, as plastic elements.
  void TransferMesh_OnlyChannel(char* src, char* dst);
  // Hot runner alone. 1; -4 when the source's format version is below 14001 (nothing is written, the log
  // stays).
  int TransferMesh_OnlyHotRunner(char* src, char* dst);
  // All plastic elements for the stream-line analysis. Always 1.
  int TransferMesh_StreamLineMesh(char* src, char* dst);
  // Mold base and mold inserts, as plastic elements. Always 1.
  int TransferMesh_OnlyMoldbase(const char* src, const char* dst);
  // Part joined with its part inserts. 1; 0 when the source's header names no part-insert material (nothing
  // is written).
  int TransferMesh_CombinePI(char* src, char* dst);
  // Part, inserts and channels. 0 when the header names neither part-insert nor channel materials (nothing is
  // written); else 1 without channel material, 2 without part-insert material, 3 with both.
  int TransferMesh_CombinePIAndChannel(char* src, char* dst);

  // Writes the mold elements as a CTG text mesh with faces and boundaries, for finite-volume programs. The
  // counts of its passes go to standard output, whatever SetDebugLog says. Always 1.
  int TransSolidOFEtoCTG(char* src, char* dst);

  // Computes the node types of a source without writing anything. mode goes to the platform's reader.
  void SetPartInsertMeshFilePath(char* src, int mode);
  // True when the source's header names at least one part-insert material.
  bool IfMeshHasPartInsert(char* src);

  // Node count of the source last read by a part-insert operation.
  int GetTotalNodeNumber() const;
  // Number of nodes that part and part inserts share (type 5).
  int GetNnodeContactPartAndPI() const;
  // out: GetTotalNodeNumber() + 1 ints of the caller; entry n receives the NodeTypeCode of node n, entry 0
  // stays.
  void GetPIGloalNodeType(int* out) const;
  // out: GetNnodeContactPartAndPI() + 1 ints of the caller; entries from 1 on receive the shared node
  // numbers, ascending; entry 0 stays.
  void GetPPINodeID(int* out) const;
  // Number of mold blocks.
  int GetMeshBlockSize() const;
  // out: GetMeshBlockSize() + 1 ints of the caller; entries from 1 on receive the material of each mold
  // block.
  void GetMoldBlock2Mat(int*& out) const;
  // Hands out the four node lists and the group counts of the last channel or hot-runner assembly. Arrays
  // that out already holds are kept when they are large enough; entries 1..m_Dim of m_NodeID are filled, the
  // rest stays.
  void GetCCCombineMeshDataAndMemory(COrvCCDataForSolver& out) const;

  // Cavity to OFV: a finite-volume mesh given as arrays becomes an OFV file.
  //
  // The mesh is kept in ONE record of the module, not in the object: whatever object is asked, it is the same
  // mesh, and two threads must not be in these operations at the same time, not even through two objects.
  // FreeMemory frees the record; so does the end of the process.
  //
  // Order: SetCTGMeshInfo; then SetCTGCavityInfo, SetCTGCavityCellInfo, SetCTGCavityNodeInfo,
  // SetCTGCavityFaceInfo and, with inlets, SetInletID2ChannelGrpID; the path at any time; then GetTransOFV or
  // GetTransOFV_OnlyChannel, as often as wanted. An operation that is called too early names the one to call
  // first. One that is called again replaces its data, and what was checked against them must be given again:
  // cells and faces after cavities, faces after cells or nodes, everything but the path after
  // SetCTGMeshInfo.
  //
  // Arrays belong to the caller, are copied, and count from 1: N+1 entries, entry 0 is not looked at. All are
  // checked when they are given; data that are refused change nothing.
  //
  // Each returns a CavityResult: 1 done, below 1 not; GetErrorMessage_Link then tells why in one line. None
  // throws. What the getters hand out of the last TransferMesh_ operation stays.

  // The file to write, a path of any length.
  int SetCTG2OFVFilePath(const char* path);
  // Sizes of the arrays: all at least 1, inlets at least 0; faceNodeCount is the sum of the faces' nodes.
  int SetCTGMeshInfo(int nodeCount, int faceCount, long long faceNodeCount, int cellCount, int cavityCount,
                     int inletCount);
  // cavityCount+1 each: the number that the model has for the cavity (any, each once) and its CavityKind.
  int SetCTGCavityInfo(const int* number, const int* kind);
  // cellCount+1: the cavity of each cell, 1 to cavityCount (its place above, not its number).
  int SetCTGCavityCellInfo(const int* cavity);
  // nodeCount+1 each: finite coordinates.
  int SetCTGCavityNodeInfo(const double* x, const double* y, const double* z);
  // faceCount+1: nodes of each face (3 or more), its owner (a cell), its neighbour (another cell, 0 on the
  // boundary). nodes, faceNodeCount+1: the nodes of face 1 from entry 1 on, then those of face 2 and so on,
  // counter-clockwise seen from outside the owner. Refused: a node twice in a face; two faces with the same
  // nodes; a cell with fewer than 4 faces; a cell that is not closed: its faces must pass each of their edges
  // once in each sense, and their outward area vectors add up to at most 1e-9 of the largest of them (of
  // cells thinner than that, 1e-14 of the square of their length); a cavity of negative volume, whose faces
  // point inwards.
  int SetCTGCavityFaceInfo(const int* nodeCount, const int* nodes, const int* owner, const int* neighbour);
  // inletCount+1 each: the inlets (any IDs, each once) and the channel group (0 to 1000) that each belongs
  // to. Not needed without inlets.
  int SetInletID2ChannelGrpID(const int* inletID, const int* channelGroup);
  // Writes the whole mesh. The file appears complete or not at all.
  int GetTransOFV();
  // Writes the cells of the channels alone, with their faces, nodes and cavities, numbered without gaps in
  // the order given; faces against other cells become boundary faces. Refused when there is no such cell.
  int GetTransOFV_OnlyChannel();
  // Empties the record, the path included.
  void FreeMemory();

  // Additional operations.

  // Diagnostic lines on standard output: 0 none (as constructed), else all.
  void SetDebugLog(int level);
  // With true, the mold-base operation draws the faces of each class into STL files named after the source
  // (SRC.Trans_*.stl) and prints the counts of the classes and the materials that it wrote on standard
  // output. Off as constructed.
  void SetSTLDiagnostics(bool on);
  // With true, a source that is refused stops an operation before it touches the target; the operation then
  // returns 0 and the getters keep the results of the operation before. The target also stays when the source
  // cannot be read again later (for inlets, gates or contact faces). As constructed, operations go on with an
  // empty mesh and may write a file that holds a header only.
  void SetStopOnRefusedSource(bool stop);
  // What went wrong in the last operation, one line that names the file; empty when nothing did. Valid until
  // the next operation.
  const char* GetErrorMessage_Link() const;
  // What the last operation noticed and let pass, one line each, each ended by a line feed. Valid until the
  // next operation.
  const char* GetWarnings_Link() const;
  // Surface elements and sensors of the source that the last target does not hold, a line for each reason:
  // "WHICH: COUNT" and a line feed. Valid until the next operation.
  const char* GetDropped_Link() const;
  // With true, the TransferMesh_ operations keep the numbers that the source's entries get in the target (4
  // bytes per entry). Off as constructed.
  void SetKeepTargetNumbers(bool on);
  // Numbers in the target that the last operation wrote: entry i, from 1 to count, is that of the source's
  // i-th node, element of the list, surface element or sensor; 0 when the target does not hold it. Elements
  // are counted through the target's plastic, then mold, then channel elements; sensors, in both meshes,
  // through the types 1, 2, 4, 5 and 6. Null and count 0 when no numbers were kept. Owned by the object,
  // valid until its next operation; entry 0 is 0.
  const int* GetTargetNumbers_Link(TargetNumbering of, int& count) const;
  // Surface numbers, in the source, of its channel ends (interface 4), ascending; entries, ownership and
  // validity as above.
  const int* GetChannelEnds_Link(int& count) const;

 private:
  struct Calls;
  friend struct Calls;

  int m_TotalNodeNumber = 0;
  int m_NnodeContactPartAndPI = 0;
  std::shared_ptr<int[]> m_PIGlobalNodeType;
  std::shared_ptr<int[]> m_PPINodeID;
  std::shared_ptr<int[]> m_PPIElemMaterial;
  int m_MeshBlockSize = 0;
  std::shared_ptr<int[]> m_MoldBlock2Mat;
  COrvCCDataForSolver m_CCData;
  int m_DebugLog = 0;
  char m_LogFilePath[512];
  bool m_STLDiagnostics = false;
  bool m_StopOnRefusedSource = false;
  bool m_KeepTargetNumbers = false;
  std::shared_ptr<const void> m_TargetNumbers;
  std::string m_ErrorMessage;
  std::string m_Warnings;
  std::string m_Dropped;
};
