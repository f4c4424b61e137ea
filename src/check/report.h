#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "check/findings.h"

namespace orvmesh::check {

// What is told of one code: in a solver mesh the documented part of it is a note of its own.
struct Finding {
  Code code;
  Severity severity;
  std::string reason;  // why it is a note though its code is none
  std::uint64_t count;
  std::vector<Entity> entities;  // the first few
};

struct Report {
  std::string path;
  std::string variant;   // empty for a component mesh
  bool refused = false;  // by the reader: the one finding is its reason, nothing else was looked at
  std::int64_t nodes = 0, surfaces = 0;
  std::array<std::int64_t, 3> elements{};  // plastic, mold, channel
  std::vector<Finding> findings;           // errors first
  // Of a component mesh with findings: the variants in which all of them would be notes.
  std::vector<std::string> explainedBy;

  std::uint64_t countOf(Severity severity) const;  // findings, not entities
  bool isSound() const { return countOf(Severity::error) + countOf(Severity::warning) == 0; }
};

// Checks an OFE file: as a component mesh, or as the solver mesh of the variant. A file that the reader
// refuses for a value in it gives one finding, of that value; one that is no sound OFE file throws Failure.
Report checkFile(const std::string& path, std::optional<std::size_t> variant);

std::string reportAsText(const Report& report);
std::string reportAsJson(const Report& report);
// The tables of codes and of the variants' documented properties, in Markdown.
std::string rulesAsMarkdown();

}  // namespace orvmesh::check
