#pragma once

#include <string>
#include <vector>

namespace orvmesh::view {

// Rows of text in columns: the first flush left, the others flush right.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> heading) { rows_.push_back(std::move(heading)); }
  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.size() == 1; }
  std::string text() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace orvmesh::view
