#include "view/json_complaint.h"

#include <algorithm>
#include <bit>

#include "base/failure.h"
#include "base/nearest_name.h"
#include "base/text_number.h"
#include "view/utf8.h"

namespace orvmesh::view {

void refuse(const std::string& name, const std::string& path, const std::string& found,
            const std::string& legal) {
  throw Failure(name, path + ": " + found + " (legal: " + legal + ")");
}

void refuseUnknownKey(const std::string& name, const std::string& path, std::string_view key,
                      const std::vector<std::string_view>& known) {
  throw Failure(name, path + ": unknown key (nearest known: " + std::string(nearestName(key, known)) + ")");
}

void refuseTwice(const std::string& name, const std::string& path) {
  refuse(name, path, "given twice", "once");
}

std::string jsonPath(const BlockShape& shape, std::int64_t entry, std::string_view key, std::int64_t place) {
  std::string path = shape.key;
  const auto addIndex = [&](std::int64_t index) {
    if (index < 0) return;
    path += '[';
    appendInt(path, index);
    path += ']';
  };
  addIndex(entry);
  if (!key.empty()) path.append(".").append(key);
  addIndex(place);
  return path;
}

std::string lengthsText(unsigned lengths) {
  const int first = std::countr_zero(lengths);
  const int last = 31 - std::countl_zero(lengths);
  if (first == last) return std::to_string(first);
  if (std::popcount(lengths) == last - first + 1)
    return std::to_string(first) + " to " + std::to_string(last);
  std::string text = std::to_string(first);
  for (int n = first + 1; n < last; ++n)
    if (((lengths >> n) & 1U) != 0) text += ", " + std::to_string(n);
  return text + " or " + std::to_string(last);
}

std::string shownText(std::string_view text) {
  constexpr std::size_t kMost = 60;
  std::string line;
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8Length(text), 1);
    if (line.size() + length > kMost) return line + "...";
    const auto first = static_cast<unsigned char>(text.front());
    const bool printable = first >= 0x20 && first != 0x7F && utf8Length(text) != 0;
    line += printable ? text.substr(0, length) : "?";
    text.remove_prefix(length);
  }
  return line;
}

}  // namespace orvmesh::view
