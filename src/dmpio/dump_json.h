#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvmesh::dmpio {

// Hands the whole file on as JSON, piece by piece (docs/formats/dmp.md). Throws Failure before the first
// piece when the file is no dump or damaged.
void dumpAsJson(const std::string& path, const std::function<void(std::string_view)>& sink);

}  // namespace orvmesh::dmpio
