#pragma once

#include "orvmesh/sensor_mapping.h"

// Rewrites SNC files (sensors and their history, as text) from the numbering of the joined mesh to that of
// the mesh itself.
class ORVMESH_API COrvMeshTransfer_SensorFile : public COrvMeshTransfer_SensorMapping {
 public:
  // Builds the standard maps of the mesh and rewrites the file in place: it is copied to sncPath + ".tmc",
  // deleted, written anew from the copy, and the copy is deleted. Where the copy's name is taken, nothing
  // happens. Where the file cannot be written again, the copy stays as the one that is left. readOption and
  // ignoredOption are those of SetMeshFilePath_Std.
  //
  // Whatever the file holds is rewritten as far as it goes: lines of no section are dropped, a malformed
  // sensor line repeats numbers of the one before it, lines that are missing become empty ones. A refused
  // mesh has no sensors: the file then loses its own. GetErrorMessage_Link tells of the first such thing.
  void TransferSensorFile_SNC(const char* sncPath, const char* meshPath, int readOption, int ignoredOption);
};
