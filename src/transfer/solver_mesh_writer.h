#pragma once

#include <initializer_list>
#include <istream>
#include <memory>
#include <ostream>

#include "platform/cofedata.h"
#include "platform/ofeio.h"
#include "transfer/prepass/results.h"
#include "transfer/target_numbers.h"

namespace orvmesh::transfer {
struct HeaderRule;
class FaceDrawings;
}  // namespace orvmesh::transfer

// The worker of one transfer: the source's model, the writer of the target, and what the pre-passes found
// out.
class COrvSolverMeshWriter : public COFEData {
 public:
  // Diagnostic lines go to console; one question is asked of consoleInput.
  COrvSolverMeshWriter(std::ostream& console, std::istream& consoleInput);

  const OFEHeader& sourceHeader() const { return model().header; }

  // Sets target header fields from `first` on to what a block writer counted. A field that the variant's
  // header rule names keeps the rule's value.
  void setCounts(OFEHeaderField first, std::initializer_list<std::int32_t> counts);

  // Lists entries of the source that the target does not hold.
  void noteDropped(const char* what, std::int32_t count = 1);

  // A part of the source that is read apart from the model; a refused source has none to lose.
  void noteLost(const char* what) {
    if (errorText().empty()) lost = what;
  }
  // True when the target would hold less than the source without need, and is not to be written for that.
  bool stops() const { return stopsWhenLost && lost != nullptr; }

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
  const orvmesh::transfer::HeaderRule* headerRule = nullptr;
  int m_DebugLog = 0;
  bool stlDiagnostics = false;
  bool stopsWhenLost = false;
  const char* lost = nullptr;  // what could not be read of a source that the model was read from before
  std::shared_ptr<orvmesh::transfer::TargetNumbers> numbers;  // null when nobody asks for them
  std::shared_ptr<orvmesh::transfer::FaceDrawings> drawings;  // made at their first use
  std::ostream& console;
  std::istream& consoleInput;
};

template <class... Parts>
void COrvSolverMeshWriter::print(const Parts&... parts) {
  (console << ... << parts) << '\n';
}
