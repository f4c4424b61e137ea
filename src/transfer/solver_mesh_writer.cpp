#include "transfer/solver_mesh_writer.h"

#include <string>

COrvSolverMeshWriter::COrvSolverMeshWriter(std::ostream& out, std::istream& in)
    : console(out), consoleInput(in) {}

void COrvSolverMeshWriter::banner(const char* title) {
  DumpInfoMsg(("\n///\n/// " + std::string(title) + "\n///\n").c_str());
}
