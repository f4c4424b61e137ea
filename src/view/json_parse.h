#pragma once

#include <string>
#include <string_view>

#include "view/json_mesh.h"

namespace orvmesh::view {

// Throws Failure(name, ...) with the place and what would be right: the JSON path, or line and column where
// the text is no JSON.
JsonMesh parseJson(std::string_view text, const std::string& name);

}  // namespace orvmesh::view
