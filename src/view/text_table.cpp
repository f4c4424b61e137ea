#include "view/text_table.h"

#include <algorithm>

namespace orvmesh::view {

std::string TextTable::text() const {
  std::vector<std::size_t> widths(rows_.front().size(), 0);
  for (const auto& row : rows_)
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());

  std::string out;
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string gap(widths[i] - row[i].size(), ' ');
      out += i == 0 ? row[i] + gap : "  " + gap + row[i];
    }
    out += '\n';
  }
  return out;
}

}  // namespace orvmesh::view
