#pragma once

#include <memory>
#include <string>

#include "orvmesh/export.h"

// An electromagnetic heat source on its way from a COMSOL text table to the nodes of an analysis mesh, and
// its three parts. All arrays of points and nodes are 1-based: entries 1..count of count + 1 values, entry 0
// is not used (and 0 where the object owns the array). Nothing throws. Copies of an object share its arrays;
// an operation that makes arrays anew leaves those of the copies as they were.

// A table of points with one value each.
class ORVMESH_API COrvTool_PointFileReader {
 public:
  COrvTool_PointFileReader();
  COrvTool_PointFileReader(const COrvTool_PointFileReader& other);
  COrvTool_PointFileReader& operator=(const COrvTool_PointFileReader& other);
  virtual ~COrvTool_PointFileReader();

  // Makes the four arrays anew, zeroed. False, and an empty table, for a negative count and when there is no
  // memory for them.
  bool SetPointNumber(int count);
  int GetPointNumber() const;
  // Coordinates in cm and values; GetPointNumber() + 1 entries, the object's own, valid until it is destroyed
  // or SetPointNumber is called. Null before the first SetPointNumber.
  double* GetX_Link() const;
  double* GetY_Link() const;
  double* GetZ_Link() const;
  double* GetValue_Link() const;

 private:
  int m_NPoint = 0;
  std::shared_ptr<double[]> m_X, m_Y, m_Z, m_Value;
};

// For each point of a mesh B the nearest point of a mesh A; of equally near ones that with the lowest number.
class ORVMESH_API COrvToolPoint2Point_MapRelation {
 public:
  COrvToolPoint2Point_MapRelation();
  COrvToolPoint2Point_MapRelation(const COrvToolPoint2Point_MapRelation& other);
  COrvToolPoint2Point_MapRelation& operator=(const COrvToolPoint2Point_MapRelation& other);
  virtual ~COrvToolPoint2Point_MapRelation();

  // The caller's arrays: not copied, not owned, and read by CreateRelation only. A null array counts as no
  // points. There is no relation until CreateRelation makes that of the new mesh.
  void SetMeshA(int count, double* x, double* y, double* z);
  void SetMeshB(int count, double* x, double* y, double* z);
  // False, and no relation, when either mesh has no points and when there is no memory for it. A point of B
  // for which nothing is found (it is not finite, or all of A are not) repeats the number of the point before
  // it, 0 at the first one.
  bool CreateRelation();
  int GetMeshBNumber() const;
  // Entry j: the number in A of the point nearest to B's point j. GetMeshBNumber() + 1 entries, the object's
  // own; null when there is no relation.
  int* GetRelation_Link() const;

 private:
  int m_NPointA = 0;
  double* m_XA = nullptr;
  double* m_YA = nullptr;
  double* m_ZA = nullptr;
  int m_NPointB = 0;
  double* m_XB = nullptr;
  double* m_YB = nullptr;
  double* m_ZB = nullptr;
  std::shared_ptr<int[]> m_Relation;
};

// Carries values across such a relation.
class ORVMESH_API COrvTool_Point2PointMapping {
 public:
  COrvTool_Point2PointMapping();
  COrvTool_Point2PointMapping(const COrvTool_Point2PointMapping& other);
  COrvTool_Point2PointMapping& operator=(const COrvTool_Point2PointMapping& other);
  virtual ~COrvTool_Point2PointMapping();

  // As COrvToolPoint2Point_MapRelation has them; both forget that a relation was built.
  void SetMeshA(int count, double* x, double* y, double* z);
  void SetMeshB(int count, double* x, double* y, double* z);
  bool CreateRelation();
  // Sets valueB[j] = valueA[relation[j]] for all points j of B. valueA is read at its entry 0 where nothing
  // was found. False, and valueB as it was, without a relation.
  bool MapValue(const double* valueA, double* valueB) const;
  // As COrvToolPoint2Point_MapRelation::GetRelation_Link, null until the relation is built.
  int* GetRelation_Link() const;

 private:
  COrvToolPoint2Point_MapRelation m_MapRelation;
  int m_IfRelationBuilt = 0;
  int m_NPointB = 0;
  int* m_Relation = nullptr;  // the relation's own
};

// Step 1 takes the table and the time span of the heating, step 2 the mesh; then the values are there.
class ORVMESH_API COrvCool_Electromagnetic_HeatSource {
 public:
  COrvCool_Electromagnetic_HeatSource();
  COrvCool_Electromagnetic_HeatSource(const COrvCool_Electromagnetic_HeatSource& other);
  COrvCool_Electromagnetic_HeatSource& operator=(const COrvCool_Electromagnetic_HeatSource& other);
  virtual ~COrvCool_Electromagnetic_HeatSource();

  // Reads surface resistive losses in W/m2 at points in m, and prints their range on standard output. False,
  // and everything as it was, when the file cannot be opened; false and an empty table when there is no
  // memory for it. A file without a table is none of these: the table is then empty. Times are in the
  // caller's unit.
  bool SetStep1_InputParmeter(const char* comsolFile, double heatingStart, double heatingEnd);
  // The caller's nodes in cm, 1-based; not copied, not owned, they must outlive the object. True, also when
  // nothing could be mapped and all values stay 0; false only when there is no memory for the values. May be
  // repeated.
  bool SetStep2_InputMesh(int nNode, double* x, double* y, double* z);

  // The value of each node's nearest point: the loss in W/cm2 times -10^7. nNode + 1 entries, the object's
  // own, valid until it is destroyed or step 2 is repeated; null before step 2.
  double* GetOutputHeatSourceValue_Link();
  void GetHeatingTime(double& start, double& end);
  // Both ends of the time span belong to it.
  bool IfActiveElectromagnetic(const double& time);

  // Additional operation: why the last step failed or left the table empty, one line; empty when it did not.
  // Valid until the next step.
  const char* GetErrorMessage_Link() const;

 private:
  bool SetInputFile_Comsol(const char* comsolFile);
  void SetMeshInfo(int nNode, double* x, double* y, double* z);
  void MappingVaulesFromMeshA_2MeshB();

  COrvTool_PointFileReader m_PointTable;
  COrvTool_Point2PointMapping m_Mapping;
  int m_NNode = 0;
  double* m_X = nullptr;
  double* m_Y = nullptr;
  double* m_Z = nullptr;
  std::shared_ptr<double[]> m_Output;
  double m_HeatingStart = 0;
  double m_HeatingEnd = 0;
  std::string m_ErrorMessage;
};
