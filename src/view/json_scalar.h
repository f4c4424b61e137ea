#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "view/block_table.h"

namespace orvmesh::view {

// A JSON value that is no list and no object. Numbers other than 64-bit integers keep their text, so that
// each is rounded once, to the type it is stored in.
struct JsonScalar {
  enum class Kind { Null, False, True, Integer, Number, Text };
  Kind kind = Kind::Null;
  std::int64_t integer = 0;
  double number = 0;        // of a Number; infinite beyond double
  std::string_view text{};  // of a Number or Text
};

std::optional<std::int32_t> asInt(const JsonScalar& scalar);
std::optional<std::uint32_t> asTag(const JsonScalar& scalar);  // of either sign
std::optional<float> asFloat(const JsonScalar& scalar);
// A text that can be handed on as a zero-terminated one.
std::optional<std::string_view> asText(const JsonScalar& scalar);

// What a value must be to become one of the type, in the words of a message about this one.
std::string legalFor(ValueType type, const JsonScalar& scalar);

// The value as a message shows it.
std::string shown(const JsonScalar& scalar);

}  // namespace orvmesh::view
