#pragma once

#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh::embedded {

// The contact-face records of a model: kind 0 by surface number, then kind 1 by insert element and face.
std::vector<ContactFaceRecord> findContactFaces(const MeshModel& model);

}  // namespace orvmesh::embedded
