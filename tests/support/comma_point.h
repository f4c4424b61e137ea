#pragma once

#include <locale>
#include <string>

namespace orvmesh::test {

// Numbers as a locale with a decimal comma writes them: a process's global locale may be such a one.
struct CommaPoint : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\1"; }
};

}  // namespace orvmesh::test
