#include "import/json_value.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/failure.h"
#include "base/nearest_name.h"
#include "import/mesh_file.h"

namespace orvmesh::importing {

void JsonValue::fail(const std::string& what) const {
  throw Failure(*file_, (path_.empty() ? "" : path_ + ": ") + what);
}

JsonValue JsonValue::member(const std::string& key, const nlohmann::json& value) const {
  return {value, *file_, path_.empty() ? key : path_ + "." + key};
}

const JsonValue& JsonValue::object(const std::vector<std::string_view>& keys) const {
  if (!value_->is_object()) fail("expected an object, found " + std::string(value_->type_name()));
  for (const auto& [key, ignored] : value_->items())
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
      fail("unknown key '" + key + "'; the nearest is '" + std::string(nearestName(key, keys)) + "'");
  return *this;
}

JsonValue JsonValue::operator[](const char* key) const {
  if (!has(key)) fail("needs the key '" + std::string(key) + "'");
  return member(key, (*value_)[key]);
}

std::string JsonValue::text() const {
  if (!value_->is_string()) fail("expected a text, found " + value_->dump());
  return value_->get<std::string>();
}

bool JsonValue::truth() const {
  if (!value_->is_boolean()) fail("expected true or false, found " + std::string(value_->type_name()));
  return value_->get<bool>();
}

double JsonValue::number() const {
  if (!value_->is_number()) fail("expected a number, found " + std::string(value_->type_name()));
  const auto number = value_->get<double>();
  if (!(std::fabs(number) <= std::numeric_limits<float>::max()))
    fail("is not finite in single precision; expected a magnitude below 3.4e38");
  return number;
}

std::int32_t JsonValue::integer(std::int32_t smallest, std::int32_t largest) const {
  const bool fits = value_->is_number_integer() &&
                    (!value_->is_number_unsigned() || value_->get<std::uint64_t>() <= INT64_MAX) &&
                    value_->get<std::int64_t>() >= smallest && value_->get<std::int64_t>() <= largest;
  if (!fits)
    fail("expected an integer in " + std::to_string(smallest) + ".." + std::to_string(largest) + ", found " +
         (value_->is_number() ? value_->dump() : value_->type_name()));
  return value_->get<std::int32_t>();
}

std::array<float, 3> JsonValue::position() const {
  std::array<float, 3> xyz{};
  auto out = xyz.begin();
  eachEntry([&](const JsonValue& entry) { *out++ = static_cast<float>(entry.number()); }, 3, 3);
  return xyz;
}

void JsonValue::eachEntry(const std::function<void(const JsonValue&)>& use, std::size_t atLeast,
                          std::size_t atMost) const {
  if (!value_->is_array()) fail("expected an array, found " + std::string(value_->type_name()));
  if (value_->size() < atLeast || value_->size() > atMost)
    fail("expected " + std::to_string(atLeast) + (atMost == atLeast ? "" : " to " + std::to_string(atMost)) +
         " entries, found " + std::to_string(value_->size()));
  for (std::size_t k = 0; k < value_->size(); ++k)
    use({(*value_)[k], *file_, path_ + "[" + std::to_string(k) + "]"});
}

void JsonValue::eachMember(const std::function<void(const std::string&, const JsonValue&)>& use) const {
  if (!value_->is_object()) fail("expected an object, found " + std::string(value_->type_name()));
  for (const auto& [key, value] : value_->items()) use(key, member(key, value));
}

nlohmann::json parseJsonFile(const std::string& path) {
  const MeshFile file(path);
  try {
    return nlohmann::json::parse(file.begin(), file.end());
  } catch (const nlohmann::json::parse_error& error) {
    const auto size = static_cast<std::size_t>(file.end() - file.begin());
    file.fail(file.begin() + std::min(error.byte == 0 ? 0 : error.byte - 1, size),
              "is no valid JSON (a value, comma or bracket is wrong here)");
  } catch (const nlohmann::json::exception&) {
    throw Failure(path, "is no valid JSON (a number is out of range)");
  }
}

}  // namespace orvmesh::importing
