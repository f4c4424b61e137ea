#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "check/findings.h"

namespace orvmesh::check {

// The solver meshes that `orvmesh transfer` makes, and what is as it should be in them though it would be a
// finding in a component mesh.

std::span<const char* const> variantNames();
// The place of a name among them.
std::optional<std::size_t> variantAt(std::string_view name);

// A documented property: findings of the code and these parts are notes in the variant.
struct Property {
  std::size_t variant;
  Code code;
  int firstPart, lastPart;
  const char* reason;
};
std::span<const Property> allProperties();
const Property* propertyOf(std::size_t variant, const Row& row);

// The variants in which all of these rows would be notes.
std::vector<std::size_t> variantsExplaining(const std::vector<Row>& rows);

}  // namespace orvmesh::check
