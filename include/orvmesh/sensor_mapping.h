#pragma once

#include <memory>
#include <string>

#include "orvmesh/export.h"

namespace orvmesh::sensor {
struct SensorMaps;
}

// Types that are numbered. When the part is joined with its part inserts, a mold element sensor in an insert
// becomes type 1, a mold node sensor on an insert type 2.
enum SensorType : int {
  SensorType_PartElement = 1,
  SensorType_PartNode = 2,
  SensorType_MoldElement = 4,
  SensorType_MoldNode = 5,
  SensorType_Sixth = 6
};

enum SensorMapCondition : int {
  SensorMap_Old2New = 0,  // by the number in the mesh
  SensorMap_New2Old = 1   // by the number in the joined mesh
};

// The sensor numbers of a mesh and those of its part joined with the part inserts, and the way between them.
//
// Sensors are numbered from 1: the global number runs over the types in the order 1, 2, 4, 5, 6 (surface
// sensors, type 3, have no number), the local number within one type. In the joined mesh the order is: type
// 1, type 4 in inserts, type 2, type 5 on inserts, the other type 4, the other type 5, type 6.
//
// What the maps hold for a sensor:
//                            standard                           fast
//   old to new  type         type in the joined mesh            the same
//               local        global number in the joined mesh;  number within its type in the joined mesh
//                            for type 2 the global number in
//                            the mesh
//               global       global number in the joined mesh   the same
//   new to old  type, local  those in the mesh                  the same
//               global       global number in the mesh          global number in the joined mesh, as asked
//
// Nothing throws. Every query gives 0 for a number without an entry, for a condition that is neither 0 nor 1,
// and before the first mesh. Copies of an object share the maps.
class ORVMESH_API COrvMeshTransfer_SensorMapping {
 public:
  COrvMeshTransfer_SensorMapping();
  ~COrvMeshTransfer_SensorMapping();
  COrvMeshTransfer_SensorMapping(const COrvMeshTransfer_SensorMapping& other);
  COrvMeshTransfer_SensorMapping& operator=(const COrvMeshTransfer_SensorMapping& other);

  // Standard variant: reads the whole mesh and looks what each mold sensor sits on; inserts are the materials
  // 5002..10001. readOption goes to the platform's reader. A refused mesh counts as one without sensors.
  void SetMeshFilePath_Std(const char* path, int readOption, int ignoredOption);
  // Fast variant: reads the counts of the header only and takes every mold sensor as one in an insert.
  // fastOption 1 or more reads the second part of the file alone. A refused file leaves everything as it was;
  // one without sensors leaves the counts.
  void SetMeshFilePath_Fast(const char* path, int fastOption);

  // Sensors of the mesh itself, of all numbered types or of one.
  int GetTotalSensorNumber_Ori() const;
  int GetSensorNumber_Ori(SensorType type) const;

  // The entry of a sensor given by type and local number. Both conditions count them as the mesh does, also
  // where the map goes by the numbers of the joined mesh. A local number beyond its type runs on into the
  // next one.
  int GetSensorMappingType(SensorMapCondition condition, SensorType type, int local) const;
  int GetSensorMappingLocalID(SensorMapCondition condition, SensorType type, int local) const;
  int GetSensorMappingGlobalID(SensorMapCondition condition, SensorType type, int local) const;

  // The entry of a global number.
  int GetSensorMappingType(SensorMapCondition condition, int index) const;
  int GetSensorMappingLocalID(SensorMapCondition condition, int index) const;
  int GetSensorMappingGlobalID(SensorMapCondition condition, int index) const;

  // Additional operation: why the last mesh (or file) was refused, one line that names it; empty when it was
  // not. Valid until the next operation that takes a path.
  const char* GetErrorMessage_Link() const;

 protected:
  const orvmesh::sensor::SensorMaps* maps() const { return m_Maps.get(); }
  std::string m_ErrorMessage;

 private:
  int GetSensorOrder(SensorType type, int local) const;

  std::shared_ptr<const orvmesh::sensor::SensorMaps> m_Maps;
};
