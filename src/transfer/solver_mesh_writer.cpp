#include "transfer/solver_mesh_writer.h"

#include <string>

#include "transfer/rules/header_rules.h"

COrvSolverMeshWriter::COrvSolverMeshWriter(std::ostream& out, std::istream& in)
    : console(out), consoleInput(in) {}

void COrvSolverMeshWriter::banner(const char* title) {
  DumpInfoMsg(("\n///\n/// " + std::string(title) + "\n///\n").c_str());
}

void COrvSolverMeshWriter::setCounts(OFEHeaderField first, std::initializer_list<std::int32_t> counts) {
  int field = first;
  for (const std::int32_t count : counts) {
    if (headerRule == nullptr || !orvmesh::transfer::names(*headerRule, field)) writer.header[field] = count;
    ++field;
  }
}

void COrvSolverMeshWriter::noteDropped(const char* what, std::int32_t count) {
  if (count == 0) return;
  for (auto& entry : found.dropped)
    if (entry.what == what) {
      entry.count += count;
      return;
    }
  found.dropped.push_back({what, count});
}
