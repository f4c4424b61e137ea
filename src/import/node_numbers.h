#pragma once

#include <cstdint>
#include <vector>

#include "import/msh_mesh.h"

namespace orvmesh::importing {

// Joins nodes that are at most `tolerance` apart: each takes the lowest node number (so the lowest tag) that
// is near enough and not itself joined to another. Returns how many were joined; `joinedTo`, by node number
// from 1, tells to which node, itself for most.
std::int32_t joinNodes(const MshMesh& mesh, double tolerance, std::vector<std::int32_t>& joinedTo);

// Puts newNumber[n] in the place of every node number n of all elements.
void renumberCorners(MshMesh& mesh, const std::vector<std::int32_t>& newNumber);

// Drops the nodes whose mark (by node number from 1) is 0 and closes the gaps, in the marks too. Returns the
// new number by old one, 0 for dropped nodes; corners of elements that are not written may become 0.
std::vector<std::int32_t> dropNodes(MshMesh& mesh, std::vector<std::uint8_t>& marks);

}  // namespace orvmesh::importing
