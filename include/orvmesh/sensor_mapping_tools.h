#pragma once

#include <memory>

#include "orvmesh/export.h"

// Numbers of sensors in an OFE file (global, from 1 in the order of the file, surface sensors left out)
// against the numbers that the user sees (display). Copies of an object share the numbers. Nothing throws.
class ORVMESH_API COrvSensorMappingTools {
 public:
  COrvSensorMappingTools();
  virtual ~COrvSensorMappingTools();
  COrvSensorMappingTools(const COrvSensorMappingTools& other);
  COrvSensorMappingTools& operator=(const COrvSensorMappingTools& other);

  // Reads the numbers. False, and a line on standard output, when the file cannot be opened. A file without
  // sensors leaves the numbers of the one before.
  bool SetMeshFilePath(const char* path);
  // The display number of a sensor; 0 when there is none of that number.
  int GetSensorDisplayID(int global) const;
  // The first sensor with the display number; 0 when there is none.
  int GetSensorGlobalID(int display) const;

 private:
  int m_NSensor = 0;
  std::shared_ptr<int[]> m_DisplayID;  // m_NSensor + 1 entries
};
