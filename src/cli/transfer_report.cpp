#include "cli/transfer_report.h"

#include <cstdio>

namespace orvmesh::cli {

bool reportTransfer(const COrvMeshFormatTransfer& transfer, const std::string& source) {
  const std::string text = transfer.GetWarnings_Link();
  for (std::size_t at = 0, end = 0; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    std::fprintf(stderr, "orvmesh: %s: warning: %s\n", source.c_str(), text.substr(at, end - at).c_str());
  const std::string error = transfer.GetErrorMessage_Link();
  if (!error.empty()) std::fprintf(stderr, "orvmesh: %s\n", error.c_str());
  return error.empty();
}

}  // namespace orvmesh::cli
