#pragma once

#include <istream>
#include <ostream>

#include "platform/cofedata.h"
#include "platform/ofeio.h"
#include "transfer/prepass/results.h"

// The worker of one transfer: the source's model, the writer of the target, and what the pre-passes found
// out.
class COrvSolverMeshWriter : public COFEData {
 public:
  // Diagnostic lines go to console; one question is asked of consoleInput.
  COrvSolverMeshWriter(std::ostream& console, std::istream& consoleInput);

  const OFEHeader& sourceHeader() const { return model().header; }

  // Sends the heading of a block to the information dump.
  void banner(const char* title);
  // A line on the console, when the diagnostics are on.
  template <class... Parts>
  void trace(const Parts&... parts) {
    if (m_DebugLog != 0) print(parts...);
  }
  template <class... Parts>
  void print(const Parts&... parts);

  OFEIO_Manipulator writer;
  orvmesh::transfer::PrepassResults found;
  int m_DebugLog = 0;
  bool stlDiagnostics = false;
  std::ostream& console;
  std::istream& consoleInput;
};

template <class... Parts>
void COrvSolverMeshWriter::print(const Parts&... parts) {
  (console << ... << parts) << '\n';
}
