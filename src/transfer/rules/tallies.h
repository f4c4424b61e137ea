#pragma once

#include <cstdint>

#include "transfer/rules/header_rules.h"

namespace orvmesh::transfer {

// The tally's value as it goes into a header word (the one float as its bits).
std::int32_t tallyValue(Tally tally, const COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
