#include "view/json_text.h"

#include <cmath>

#include "base/text_number.h"
#include "view/utf8.h"

namespace orvmesh::view {
namespace {

void appendEscaped(std::string& out, char c) {
  constexpr char kHex[] = "0123456789abcdef";
  if (c == '"' || c == '\\') {
    out += '\\';
    out += c;
  } else if (c == '\n') {
    out += "\\n";
  } else if (c == '\t') {
    out += "\\t";
  } else if (const auto byte = static_cast<unsigned char>(c); byte < 0x20) {
    out += "\\u00";
    out += kHex[byte >> 4U];
    out += kHex[byte & 0xFU];
  } else {
    out += c;
  }
}

}  // namespace

bool appendJsonFloat(std::string& out, float value) {
  if (!std::isfinite(value)) return false;
  // Without its point a negative zero would be the integer 0.
  if (value == 0 && std::signbit(value))
    out += "-0.0";
  else
    appendExact(out, value);
  return true;
}

bool appendJsonText(std::string& out, std::string_view text) {
  out += '"';
  while (!text.empty()) {
    const auto length = utf8Length(text);
    if (length == 0) return false;
    if (length == 1)
      appendEscaped(out, text.front());
    else
      out += text.substr(0, length);
    text.remove_prefix(length);
  }
  out += '"';
  return true;
}

}  // namespace orvmesh::view
