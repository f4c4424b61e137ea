#pragma once

#include <string>
#include <string_view>

namespace orvmesh::embedded {

// A text log that may be missing: whatever goes wrong with it is nobody's error. `kept` names a file that is
// never touched, should the log's name lead to it.
bool startLog(const std::string& logPath, const std::string& kept);
void appendToLog(const std::string& logPath, std::string_view text, const std::string& kept);

}  // namespace orvmesh::embedded
