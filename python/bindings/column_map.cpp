#include "bindings/column_map.h"

#include <algorithm>

#include "bindings/arrays.h"

namespace orvmesh::python {
namespace {

using embedded::ColumnLayout;
using embedded::Per;

[[noreturn]] void refuse(const std::string& place, const std::string& what) {
  throw Fault(kArgument, "", place + ": " + what);
}

bool hasType(py::handle array, char type) {
  switch (type) {
    case 'I':
      return py::isinstance<Input<std::int32_t>>(array);
    case 'L':
      return py::isinstance<Input<std::int64_t>>(array);
    case 'F':
      return py::isinstance<Input<float>>(array);
    default:
      return py::isinstance<Input<std::uint8_t>>(array);
  }
}

const char* typeName(char type) {
  return type == 'I' ? "int32" : type == 'L' ? "int64" : type == 'F' ? "float32" : "uint8";
}

// Readers refuse a file whose lengths and places are not finite.
void checkFinite(const py::array& array, const std::string& place) {
  const std::span<const float> values(static_cast<const float*>(array.data()),
                                      static_cast<std::size_t>(array.size()));
  const auto at = std::ranges::find_if(values, [](float value) { return !(value - value == 0); });
  if (at == values.end()) return;
  const auto width = array.ndim() == 2 ? array.shape(1) : 1;
  refuse(place + "[" + std::to_string((at - values.begin()) / width) + "]", "is not finite");
}

}  // namespace

BlockColumns::BlockColumns(const embedded::BlockLayout& layout, py::handle columns) : block_(layout.name) {
  if (columns.is_none()) return;
  const auto given = py::reinterpret_borrow<py::dict>(columns);
  for (std::size_t i = 0; i < layout.columns.size(); ++i) {
    const char* const name = layout.columns[i].name;
    if (!given.contains(name)) refuse(std::string(block_) + "." + name, "is missing");
    take(layout.columns[i], i, given[name]);
  }
  checkCounts(layout);
  checkOffsets(layout);
}

void BlockColumns::take(const ColumnLayout& layout, std::size_t index, py::handle array) {
  const std::string place = std::string(block_) + "." + layout.name;
  if (!hasType(array, layout.type))
    refuse(place, std::string("must be a C-contiguous array of ") + typeName(layout.type));
  const auto values = py::reinterpret_borrow<py::array>(array);
  const bool isTable = layout.per == Per::Entry && layout.width > 1;
  if (isTable ? values.ndim() != 2 || values.shape(1) != layout.width : values.ndim() != 1)
    refuse(place, "its shape must be " + (isTable ? "(n, " + std::to_string(layout.width) + ")" : "(n,)"));
  if (layout.type == 'F' && std::string_view(layout.name) != "value") checkFinite(values, place);
  columns_[index] = {values.data(), static_cast<std::size_t>(values.size())};
  arrays_.push_back(values);
}

void BlockColumns::checkCounts(const embedded::BlockLayout& layout) {
  const auto isPerEntry = [](const ColumnLayout& column) { return column.per == Per::Entry; };
  const auto first = std::ranges::find_if(layout.columns, isPerEntry);
  const auto firstIndex = static_cast<std::size_t>(first - layout.columns.begin());
  entries_ = static_cast<std::int64_t>(columns_[firstIndex].count) / first->width;
  for (std::size_t i = firstIndex; i < layout.columns.size(); ++i) {
    const ColumnLayout& column = layout.columns[i];
    const auto count = static_cast<std::int64_t>(columns_[i].count);
    if (isPerEntry(column) && count != entries_ * column.width)
      refuse(std::string(block_) + "." + column.name, "has " + std::to_string(count / column.width) +
                                                          " entries, " + first->name + " has " +
                                                          std::to_string(entries_));
  }
}

void BlockColumns::checkOffsets(const embedded::BlockLayout& layout) {
  const Per per = layout.columns.back().per;
  if (per != Per::Offsets && per != Per::OffsetsIfMixed && per != Per::TextOffsets) return;
  offsetsColumn_ = layout.columns.size() - 1;
  const auto offsets = spanOf<std::int64_t>(offsetsColumn_);
  const auto pool = static_cast<std::int64_t>(columns_[0].count);
  const std::string place = std::string(block_) + ".offsets";
  if (per == Per::OffsetsIfMixed && offsets.empty()) {
    if (entries_ == 0 ? pool != 0 : pool % entries_ != 0)
      refuse(place, "must be given, " + std::to_string(entries_) + " elements do not share " +
                        std::to_string(pool) + " nodes evenly");
    commonLength_ = entries_ == 0 ? 0 : static_cast<std::size_t>(pool / entries_);
    return;
  }
  if (entries_ == 0 && offsets.empty() && pool == 0) return;
  if (per != Per::TextOffsets && static_cast<std::int64_t>(offsets.size()) != entries_ + 1)
    refuse(place, "has " + std::to_string(offsets.size()) + " values for " + std::to_string(entries_) +
                      " entries (legal: one more)");
  if (offsets.empty() || offsets.front() != 0 || offsets.back() != pool || !std::ranges::is_sorted(offsets))
    refuse(place, "must ascend from 0 to " + std::to_string(pool));
}

}  // namespace orvmesh::python
