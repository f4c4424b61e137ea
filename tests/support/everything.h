#pragma once

#include "support/test_data.h"

namespace orvmesh::test {

// Every block, every key, every kind of value, as dump prints them.
inline const std::string kEverything = testData("support/data/everything.json");

}  // namespace orvmesh::test
