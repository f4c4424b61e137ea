#include "cli/transfer_report.h"

#include <cstdio>

namespace orvmesh::cli {
namespace {

void printLines(std::FILE* out, const std::string& before, const std::string& text) {
  for (std::size_t at = 0, end = 0; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    std::fprintf(out, "%s%s\n", before.c_str(), text.substr(at, end - at).c_str());
}

}  // namespace

bool reportTransfer(const COrvMeshFormatTransfer& transfer, const std::string& source) {
  printLines(stderr, "orvmesh: " + source + ": warning: ", transfer.GetWarnings_Link());
  const std::string error = transfer.GetErrorMessage_Link();
  if (!error.empty()) std::fprintf(stderr, "orvmesh: %s\n", error.c_str());
  return error.empty();
}

void printDropped(const COrvMeshFormatTransfer& transfer) {
  printLines(stdout, "  not in it: ", transfer.GetDropped_Link());
}

}  // namespace orvmesh::cli
