#pragma once

#include <cstdint>
#include <vector>

#include "check/findings.h"
#include "check/mesh_access.h"
#include "platform/mesh_records.h"

namespace orvmesh::check {

// Each checker looks at one thing in a model and tells what it finds. They may be called in any order, as far
// as their arguments allow.

void checkHeaderCounts(const MeshModel& model, Collector& found);
// Numbers that the reader lets through: nodes of conditions, elements of bad-element lists.
void checkReferences(const MeshModel& model, Collector& found);
// `lone`: also tell of components that nothing speaks of.
void checkComponents(const MeshModel& model, bool lone, Collector& found);
void checkSensors(const MeshModel& model, const NodeUses& uses, Collector& found);

void checkUnusedNodes(const MeshModel& model, const NodeUses& uses, Collector& found);
// Nodes within a millionth of the diagonal of the box around all used nodes.
void checkCoincidentNodes(const MeshModel& model, const NodeUses& uses, Collector& found);

void checkVolumes(const MeshModel& model, Collector& found);
void checkMaterials(const MeshModel& model, Collector& found);
// By element, counted from 0 over all lists: true for the later ones of equal elements.
using ElementMarks = std::vector<bool>;
ElementMarks checkDuplicates(const MeshModel& model, Collector& found);

// Surface elements whose owner does not have their face. Surfaces of a component without elements are left
// out.
std::vector<std::int32_t> surfacesOffOwner(const MeshModel& model);
// Faces of more than two elements, the left-out ones aside; and tells what is wrong with the surfaces.
void checkFaces(const MeshModel& model, const ElementMarks& leftOut,
                const std::vector<std::int32_t>& surfaces, Collector& found);

void checkChannelEnds(const MeshModel& model, Collector& found);
void checkChannelSurface(const MeshModel& model, Collector& found);

}  // namespace orvmesh::check
