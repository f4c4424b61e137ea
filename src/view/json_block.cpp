#include "view/json_block.h"

#include <cmath>
#include <cstring>

#include "base/text_number.h"
#include "view/json_complaint.h"

namespace orvmesh::view {
namespace {

// What the value of a key that readers take as a number must be; empty when it is that, or for other keys.
std::string wrongPair(std::string_view key, std::string_view text) {
  if (key == "THICKNESS") {
    const auto value = parseNumber<double>(text);
    return value && std::isfinite(*value) ? "" : "a text that is a finite number";
  }
  const bool isInteger = key == "BRANCH_ID" || key == "BRANCH_OUTLET_ID" || key == "BRANCH_NUMBER";
  return isInteger && !parseNumber<std::int32_t>(text) ? "a text that is an integer of 32 bits" : "";
}

std::string valuesText(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " value" : " values");
}

}  // namespace

void JsonBlockReader::open(int block) {
  block_ = block;
  shape_ = &blockShape(block);
  at_ = At::Key;
}

std::int64_t JsonBlockReader::entry() const {
  return shape().single ? -1 : mesh_.counts[static_cast<std::size_t>(block_)];
}

std::string JsonBlockReader::path() const {
  const auto place = static_cast<std::int64_t>(place_);
  switch (at_) {
    case At::Row:
      return jsonPath(shape(), entry(), {}, place);
    case At::Object:
      return jsonPath(shape(), entry(), argument().key, -1);
    case At::List:
      return jsonPath(shape(), entry(), argument().key, place);
    case At::Dictionary:
      return jsonPath(shape(), entry(), argument().key, -1) + "." + shownText(pairKey_);
    case At::Entries:
      return jsonPath(shape(), entry(), {}, -1);
    default:
      return shape().key;
  }
}

// What the place needs, seen from a list or object that stands there, or a plain value where one of these
// belongs.
std::string JsonBlockReader::expected() const {
  const auto listOf = [](const std::string& values) { return "a list of " + values + " values"; };
  const std::string rowText = shape().isObject() ? "" : listOf(std::to_string(std::strlen(shape().row)));
  switch (at_) {
    case At::Row:
      return place_ < std::strlen(shape().row) ? legalFor(ValueType{shape().row[place_]}, {}) : rowText;
    case At::Object:
      if (!argument().list) return legalFor(argument().type, {});
      return argument().lengths == 0 ? "a list" : listOf(lengthsText(argument().lengths));
    case At::List:
      return legalFor(argument().type, {});
    case At::Dictionary:
      return legalFor(ValueType::Text, {});
    case At::Entries:
      return shape().isObject() ? "an object" : rowText;
    default:
      return shape().single ? rowText : "a list of entries";
  }
}

void JsonBlockReader::refuseHere(const std::string& found, const std::string& legal) const {
  refuse(name_, path(), found, legal);
}

void JsonBlockReader::begin(bool object) {
  const bool fits = at_ == At::Key       ? !object
                    : at_ == At::Entries ? object == shape().isObject()
                    : at_ == At::Object
                        ? (object ? argument().type == ValueType::Dictionary : argument().list)
                        : false;
  if (!fits) refuseHere(object ? "an object" : "a list", expected());
  if (at_ == At::Object) return beginArgument(object);
  if (at_ == At::Entries || shape().single) return beginEntry();
  at_ = At::Entries;
}

void JsonBlockReader::beginEntry() {
  at_ = shape().isObject() ? At::Object : At::Row;
  place_ = 0;
  argument_ = 0;
  seen_ = 0;
}

void JsonBlockReader::beginArgument(bool object) {
  at_ = object ? At::Dictionary : At::List;
  place_ = 0;
  pairs_.clear();
}

void JsonBlockReader::end() {
  switch (at_) {
    case At::Row:
      return endRow();
    case At::Object:
      return endObject();
    case At::List:
      return endList();
    case At::Dictionary:
      at_ = At::Object;
      return;
    default:
      at_ = At::Outside;
  }
}

void JsonBlockReader::endRow() {
  const auto places = std::strlen(shape().row);
  if (place_ != places)
    refuse(name_, jsonPath(shape(), entry(), {}, -1), valuesText(place_), std::to_string(places));
  endEntry();
}

void JsonBlockReader::endObject() {
  for (std::size_t i = 0; i < shape().arguments.size(); ++i) appendArgument(i);
  endEntry();
}

void JsonBlockReader::endEntry() {
  ++mesh_.counts[static_cast<std::size_t>(block_)];
  at_ = shape().single ? At::Outside : At::Entries;
}

void JsonBlockReader::endList() {
  at_ = At::Object;
  const unsigned lengths = argument().lengths;
  const bool fits = lengths == 0 || (place_ < 32 && ((lengths >> place_) & 1U) != 0);
  if (!fits) refuseHere(valuesText(place_), lengthsText(lengths));
}

// Arguments that were left out are 0, empty or absent.
void JsonBlockReader::appendArgument(std::size_t index) {
  const Argument& argument = shape().arguments[index];
  EntryWords& slot = slots_[index];
  if (((seen_ >> index) & 1U) == 0) {
    if (argument.required())
      refuse(name_, jsonPath(shape(), entry(), argument.key, -1), "missing",
             "a list of " + lengthsText(argument.lengths) + " node numbers");
    slot.clear();
    slot.putZeros(argument.fixedLength() ? argument.length() : 1);
    if (argument.type == ValueType::Text) slot.putZeros(1);
  } else if (argument.type == ValueType::Dictionary) {
    slot.clear();
    slot.putInt(1 + static_cast<std::int32_t>(pairs_.size()));
    for (const auto& [key, value] : pairs_) {
      slot.putText(key);
      slot.putText(value);
    }
  } else if (argument.list && !argument.fixedLength()) {
    words().putInt(static_cast<std::int32_t>(slot.size()));
  }
  words().append(slot);
}

void JsonBlockReader::key(const std::string& key) {
  if (at_ == At::Object) return argumentKey(key);
  pairKey_ = key;
  if (key.find('\0') != std::string::npos) refuseHere("a key with the character U+0000", "a key without it");
  if (pairs_.contains(key)) refuseTwice(name_, path());
}

void JsonBlockReader::argumentKey(const std::string& key) {
  const auto arguments = shape().arguments;
  // Keys mostly come in the table's order.
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::size_t candidate = (argument_ + i) % arguments.size();
    if (key != arguments[candidate].key) continue;
    argument_ = candidate;
    if (((seen_ >> candidate) & 1U) != 0) refuseTwice(name_, path());
    seen_ |= 1U << candidate;
    slots_[candidate].clear();
    return;
  }
  std::vector<std::string_view> known;
  for (const auto& argument : arguments) known.emplace_back(argument.key);
  refuseUnknownKey(name_, jsonPath(shape(), entry(), shownText(key), -1), key, known);
}

void JsonBlockReader::scalar(const JsonScalar& value) {
  switch (at_) {
    case At::Row:
      if (place_ < std::strlen(shape().row)) putValue(ValueType{shape().row[place_]}, value, words());
      ++place_;
      return;
    case At::Object:
      if (argument().list || argument().type == ValueType::Dictionary) refuseHere(shown(value), expected());
      return putValue(argument().type, value, slots_[argument_]);
    case At::List:
      putValue(argument().type, value, slots_[argument_]);
      ++place_;
      return;
    case At::Dictionary:
      return putPair(value);
    default:
      refuseHere(shown(value), expected());
  }
}

void JsonBlockReader::putValue(ValueType type, const JsonScalar& value, EntryWords& words) {
  if (type == ValueType::Int) {
    if (const auto number = asInt(value)) return words.putInt(*number);
  } else if (type == ValueType::Tag) {
    if (const auto number = asTag(value)) return words.putInt(static_cast<std::int32_t>(*number));
  } else if (type == ValueType::Float) {
    if (const auto number = asFloat(value)) return words.putFloat(*number);
  } else if (const auto text = asText(value)) {
    return words.putText(*text);
  }
  refuseHere(shown(value), legalFor(type, value));
}

void JsonBlockReader::putPair(const JsonScalar& value) {
  const auto text = asText(value);
  if (!text) refuseHere(shown(value), legalFor(ValueType::Text, value));
  if (const std::string legal = wrongPair(pairKey_, *text); !legal.empty()) refuseHere(shown(value), legal);
  pairs_.emplace(pairKey_, *text);
}

}  // namespace orvmesh::view
