#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvmesh::heatsource {

// How many lines of one sort there were, and where the first few are.
struct LineList {
  static constexpr std::size_t kKept = 5;
  std::int64_t count = 0;
  std::vector<std::int64_t> first;  // line numbers, from 1

  void add(std::int64_t line) {
    if (++count <= static_cast<std::int64_t>(kKept)) first.push_back(line);
  }
};

// What was seen of a COMSOL table: of its last block, but for the lines of the file as a whole.
struct ComsolReport {
  // What the comment lines say, cut to 500 bytes.
  std::string description;  // of the line "% Description: ..."
  std::string lengthUnit;   // of the line "% Length unit: m"
  std::string columns;      // the column header without its %

  std::int64_t lines = 0, cutLines = 0;
  int blocks = 0;                   // column headers that started data
  int points = 0;                   // as announced
  int rows = 0;                     // data lines that were there; the rest up to `points` stays zero
  LineList blank;                   // rows without anything
  LineList incomplete;              // rows with fewer than four numbers: what is missing is 0
  LineList notANumber;              // rows with a value that is no number
  LineList infinite;                // rows with an infinite value
  LineList nowhere;                 // rows with a coordinate that is not finite: never a nearest point
  LineList longer;                  // rows with more than four columns
  std::size_t moreColumns = 0;      // the most that any row has behind the fourth
  std::vector<std::int32_t> empty;  // rows that are blank or incomplete, ascending, counted from 1
  double largest = -1e30, smallest = 1e30;  // raw values, W/m2

  std::string error;  // why there is no table although the file could be opened, or not all of it
};

}  // namespace orvmesh::heatsource
