#include "view/json_scalar.h"

#include <cmath>
#include <limits>

#include "base/text_number.h"
#include "view/json_complaint.h"

namespace orvmesh::view {
namespace {

using Kind = JsonScalar::Kind;

template <class Int>
constexpr bool holds(std::int64_t value) {
  return std::numeric_limits<Int>::min() <= value && value <= std::numeric_limits<Int>::max();
}

bool isWrittenAsInteger(const JsonScalar& scalar) {
  return scalar.kind == Kind::Integer ||
         (scalar.kind == Kind::Number && scalar.text.find_first_of(".eE") == std::string_view::npos);
}

std::string integerRange(std::int64_t first, std::int64_t last) {
  return std::to_string(first) + " to " + std::to_string(last);
}

std::string floatRange() {
  std::string largest;
  appendExact(largest, std::numeric_limits<float>::max());
  return "-" + largest + " to " + largest;
}

}  // namespace

std::optional<std::int32_t> asInt(const JsonScalar& scalar) {
  if (scalar.kind != Kind::Integer || !holds<std::int32_t>(scalar.integer)) return std::nullopt;
  return static_cast<std::int32_t>(scalar.integer);
}

std::optional<std::uint32_t> asTag(const JsonScalar& scalar) {
  if (scalar.kind != Kind::Integer) return std::nullopt;
  if (!holds<std::int32_t>(scalar.integer) && !holds<std::uint32_t>(scalar.integer)) return std::nullopt;
  return static_cast<std::uint32_t>(scalar.integer);
}

std::optional<float> asFloat(const JsonScalar& scalar) {
  if (scalar.kind == Kind::Integer) return static_cast<float>(scalar.integer);
  if (scalar.kind != Kind::Number) return std::nullopt;
  if (const auto value = parseNumber<float>(scalar.text)) return value;
  // Too small for a float is zero, too large is an error.
  if (std::abs(scalar.number) < 1) return static_cast<float>(scalar.number);
  return std::nullopt;
}

std::optional<std::string_view> asText(const JsonScalar& scalar) {
  if (scalar.kind != Kind::Text || scalar.text.find('\0') != std::string_view::npos) return std::nullopt;
  return scalar.text;
}

std::string legalFor(ValueType type, const JsonScalar& scalar) {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  switch (type) {
    case ValueType::Int:
      return isWrittenAsInteger(scalar) ? integerRange(kLeast, std::numeric_limits<std::int32_t>::max())
                                        : "an integer";
    case ValueType::Tag:
      return isWrittenAsInteger(scalar) ? integerRange(kLeast, std::numeric_limits<std::uint32_t>::max())
                                        : "an integer";
    case ValueType::Float:
      return scalar.kind == Kind::Number ? floatRange() : "a number";
    case ValueType::Text:
      return scalar.kind == Kind::Text ? "a text without the character U+0000" : "a text";
    case ValueType::Dictionary:
      break;
  }
  return "an object of texts";
}

std::string shown(const JsonScalar& scalar) {
  switch (scalar.kind) {
    case Kind::Null:
      return "null";
    case Kind::False:
      return "false";
    case Kind::True:
      return "true";
    case Kind::Integer:
      return std::to_string(scalar.integer);
    case Kind::Number:
      return shownText(scalar.text);
    case Kind::Text:
      break;
  }
  return '"' + shownText(scalar.text) + '"';
}

}  // namespace orvmesh::view
