#pragma once

#include <string>

#include "platform/mesh_records.h"
#include "transfer/ctg/boundaries.h"
#include "transfer/ctg/element_faces.h"
#include "transfer/ctg/exported_nodes.h"

namespace orvmesh::transfer {

// What a CTG file is written from: the mold elements of a model and what the three passes made of them.
struct CtgMesh {
  const MeshModel& model;
  ExportedNodes nodes;
  BoundaryNodes boundaryNodes;
  ElementFaces faces;
  BoundaryFaces boundaryFaces;
};

// Writes the file, whole or not at all. Empty, or what prevented it in words.
std::string writeCtg(const CtgMesh& mesh, const std::string& path);

}  // namespace orvmesh::transfer
