#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvmesh::importing {

// A value of a JSON file together with its path in it ("sensors[2].type"), so that whatever is wrong with it
// can be said.
class JsonValue {
 public:
  JsonValue(const nlohmann::json& value, const std::string& file, std::string path)
      : value_(&value), file_(&file), path_(std::move(path)) {}

  // Each fails unless the value has the shape.
  const JsonValue& object(const std::vector<std::string_view>& keys) const;
  std::string text() const;
  bool truth() const;
  double number() const;  // finite in single precision
  std::int32_t integer(std::int32_t smallest, std::int32_t largest) const;
  std::array<float, 3> position() const;
  void eachEntry(const std::function<void(const JsonValue&)>& use, std::size_t atLeast = 0,
                 std::size_t atMost = static_cast<std::size_t>(-1)) const;
  void eachMember(const std::function<void(const std::string& key, const JsonValue&)>& use) const;

  bool has(const char* key) const { return value_->contains(key); }
  bool isArray() const { return value_->is_array(); }
  bool isObject() const { return value_->is_object(); }
  // A member that must be there.
  JsonValue operator[](const char* key) const;

  [[noreturn]] void fail(const std::string& what) const;
  const std::string& path() const { return path_; }

 private:
  JsonValue member(const std::string& key, const nlohmann::json& value) const;

  const nlohmann::json* value_;
  const std::string* file_;
  std::string path_;
};

// The whole file; fails with the line where it is no JSON.
nlohmann::json parseJsonFile(const std::string& path);

}  // namespace orvmesh::importing
