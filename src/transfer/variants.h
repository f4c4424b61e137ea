#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "transfer/rules/element_rules.h"
#include "transfer/rules/header_rules.h"

class COrvSolverMeshWriter;

// The six variants as data: header rule, then blocks in the order of their lines.
namespace orvmesh::transfer {

struct Step {
  const char* block;  // the target's block that this step writes
  void (*run)(COrvSolverMeshWriter& worker);
  const char* rule;  // what it writes, in words
  const ElementBlock* elements = nullptr;
};

enum class OpenReport : std::uint8_t { None, Line, LineWithPath };

struct Variant {
  const char* name;   // on the command line
  const char* entry;  // operation of the transfer object
  bool announces;     // sends "Writing Binary OFE data" first
  const HeaderRule& header;
  void (*traceHeader)(COrvSolverMeshWriter& worker);
  OpenReport openReport;  // what it prints when the target did not open
  bool carriesSensors;
  std::span<const Step> steps;
  const char* closingTrace = nullptr;  // diagnostic line after the last step
};

extern const Variant kChannelOnly;
extern const Variant kHotRunnerOnly;
extern const Variant kStreamLine;
extern const Variant kMoldBaseOnly;
extern const Variant kPartInsert;
extern const Variant kPartInsertAndChannel;

std::span<const Variant* const> allVariants();

// Writes the target: header, blocks, end. Returns what endWriting returned.
int writeVariant(const Variant& variant, COrvSolverMeshWriter& worker, const char* target);

// The tables of all variants as Markdown.
std::string describeVariants();

}  // namespace orvmesh::transfer
