#include "view/json_parse.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/text_number.h"
#include "platform/header_counts.h"
#include "view/json_block.h"
#include "view/json_complaint.h"

namespace orvmesh::view {
namespace {

struct HeaderText {
  const char* key;
  std::string OFEHeader::*text;
};
constexpr HeaderText kHeaderTexts[] = {{"source", &OFEHeader::source},
                                       {"dateTime", &OFEHeader::dateTime},
                                       {"unit", &OFEHeader::unit},
                                       {"remark", &OFEHeader::remark}};

constexpr const char* kFormatName = "ofe-json";
constexpr std::int64_t kFormatVersion = 1;

// The parser's events at the top level and in the header; a block's go to the block reader. The form has a
// fixed depth, so no text nests deeper than these states.
class MeshReader {
 public:
  MeshReader(JsonMesh& mesh, const std::string& name) : mesh_(mesh), name_(name), block_(mesh, name) {}

  bool null() { return scalar({}); }
  bool boolean(bool value) {
    return scalar({.kind = value ? JsonScalar::Kind::True : JsonScalar::Kind::False});
  }
  bool number_integer(std::int64_t value) {
    return scalar({.kind = JsonScalar::Kind::Integer, .integer = value});
  }
  bool number_unsigned(std::uint64_t value) {
    if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return number_integer(static_cast<std::int64_t>(value));
    return number_float(static_cast<double>(value), std::to_string(value));
  }
  bool number_float(double value, const std::string& text) {
    return scalar({.kind = JsonScalar::Kind::Number, .number = value, .text = text});
  }
  bool string(const std::string& text) { return scalar({.kind = JsonScalar::Kind::Text, .text = text}); }
  bool binary(const nlohmann::json::binary_t&) { return scalar({}); }
  bool start_object(std::size_t) { return begin(true); }
  bool start_array(std::size_t) { return begin(false); }
  bool end_object() { return end(); }
  bool end_array() { return end(); }
  bool key(const std::string& key);
  bool parse_error(std::size_t, const std::string& token, const nlohmann::json::exception& error);

 private:
  enum class At { Start, Top, Header, Fields };

  bool begin(bool object);
  bool end();
  bool scalar(const JsonScalar& value);
  void topKey();
  void headerKey();
  void fieldKey();
  void setFormat(const JsonScalar& value) const;
  void setHeaderText(const JsonScalar& value);
  void setField(const JsonScalar& value);
  void addSeen(std::vector<std::string>& seen) const;

  std::string path() const;
  std::string expected() const;

  JsonMesh& mesh_;
  const std::string& name_;
  JsonBlockReader block_;
  At at_ = At::Start;
  std::string key_;  // the last one of the level
  int field_ = 0;    // what it names among the header's fields
  std::vector<std::string> topKeys_, headerKeys_;
};

std::string MeshReader::path() const {
  switch (at_) {
    case At::Start:
      return "top level";
    case At::Top:
      return shownText(key_);
    case At::Header:
      return "header." + shownText(key_);
    case At::Fields:
      break;
  }
  return "header.fields." + shownText(key_);
}

std::string MeshReader::expected() const {
  if (at_ == At::Fields) return OFEHeader::isFloatField(field_) ? "a number" : "an integer";
  if (at_ == At::Header && key_ != "fields") return "a text";
  if (at_ == At::Top && key_ == "format") return std::string("the text ") + kFormatName;
  if (at_ == At::Top && key_ == "version") return std::to_string(kFormatVersion);
  return "an object";
}

bool MeshReader::begin(bool object) {
  if (block_.isOpen()) {
    block_.begin(object);
    return true;
  }
  const bool fits =
      at_ == At::Start || (at_ == At::Top && key_ == "header") || (at_ == At::Header && key_ == "fields");
  if (!object || !fits) refuse(name_, path(), object ? "an object" : "a list", expected());
  at_ = at_ == At::Start ? At::Top : at_ == At::Top ? At::Header : At::Fields;
  return true;
}

bool MeshReader::end() {
  if (block_.isOpen()) {
    block_.end();
    return true;
  }
  if (at_ == At::Top && std::ranges::find(topKeys_, blockShape(kNodes).key) == topKeys_.end())
    refuse(name_, blockShape(kNodes).key, "missing", "a list of [x, y, z]");
  at_ = at_ == At::Fields ? At::Header : at_ == At::Header ? At::Top : At::Start;
  return true;
}

bool MeshReader::key(const std::string& key) {
  if (block_.isOpen()) {
    block_.key(key);
    return true;
  }
  key_ = key;
  if (at_ == At::Top) topKey();
  if (at_ == At::Header) headerKey();
  if (at_ == At::Fields) fieldKey();
  return true;
}

void MeshReader::addSeen(std::vector<std::string>& seen) const {
  if (std::ranges::find(seen, key_) != seen.end()) refuseTwice(name_, path());
  seen.push_back(key_);
}

void MeshReader::topKey() {
  std::vector<std::string_view> known{"format", "version", "header"};
  for (int block = 0; block < kBlockCount; ++block) {
    known.emplace_back(blockShape(block).key);
    if (known.back() == key_) block_.open(block);
  }
  if (std::ranges::find(known, key_) == known.end()) refuseUnknownKey(name_, path(), key_, known);
  addSeen(topKeys_);
}

void MeshReader::headerKey() {
  std::vector<std::string_view> known{"fields"};
  for (const auto& text : kHeaderTexts) known.emplace_back(text.key);
  if (std::ranges::find(known, key_) == known.end()) refuseUnknownKey(name_, path(), key_, known);
  addSeen(headerKeys_);
}

void MeshReader::fieldKey() {
  const auto number = parseNumber<std::int64_t>(key_);
  if (number) {
    if (*number < 0 || *number >= OFEHeader::kWords || std::to_string(*number) != key_)
      refuse(name_, path(), "no field of the header", "0 to " + std::to_string(OFEHeader::kWords - 1));
    field_ = static_cast<int>(*number);
  } else {
    std::vector<std::string_view> known;
    for (const auto& named : namedFields()) known.emplace_back(named.name);
    const auto named = std::ranges::find(known, key_);
    if (named == known.end()) refuseUnknownKey(name_, path(), key_, known);
    field_ = namedFields()[static_cast<std::size_t>(named - known.begin())].field;
  }
  if (mesh_.given.test(static_cast<std::size_t>(field_))) refuseTwice(name_, path());
  mesh_.given.set(static_cast<std::size_t>(field_));
}

bool MeshReader::scalar(const JsonScalar& value) {
  if (block_.isOpen()) {
    block_.scalar(value);
  } else if (at_ == At::Fields) {
    setField(value);
  } else if (at_ == At::Header && key_ != "fields") {
    setHeaderText(value);
  } else {
    setFormat(value);
  }
  return true;
}

void MeshReader::setField(const JsonScalar& value) {
  if (OFEHeader::isFloatField(field_)) {
    const auto number = asFloat(value);
    if (!number) refuse(name_, path(), shown(value), legalFor(ValueType::Float, value));
    mesh_.header.setFloatField(field_, *number);
  } else {
    const auto number = asInt(value);
    if (!number) refuse(name_, path(), shown(value), legalFor(ValueType::Int, value));
    mesh_.header[field_] = *number;
  }
}

void MeshReader::setHeaderText(const JsonScalar& value) {
  if (value.kind != JsonScalar::Kind::Text) refuse(name_, path(), shown(value), expected());
  for (const auto& place : kHeaderTexts)
    if (key_ == place.key) mesh_.header.*place.text = value.text;
}

// Leaves nothing but the two values that tell the form itself.
void MeshReader::setFormat(const JsonScalar& value) const {
  const bool isFormat = key_ == "format" && value.kind == JsonScalar::Kind::Text && value.text == kFormatName;
  const bool isVersion = key_ == "version" && asInt(value) == kFormatVersion;
  if (at_ != At::Top || !(isFormat || isVersion)) refuse(name_, path(), shown(value), expected());
}

bool MeshReader::parse_error(std::size_t, const std::string& token, const nlohmann::json::exception& error) {
  constexpr int kNumberOverflow = 406;
  if (error.id == kNumberOverflow) number_float(std::numeric_limits<double>::infinity(), token);
  std::string_view what = error.what();
  for (const std::string_view before : {"] ", "parse error at "})
    if (const auto start = what.find(before); start != std::string_view::npos)
      what.remove_prefix(start + before.size());
  what = what.substr(0, what.find("; last read:"));
  throw Failure(name_, "no JSON: " + std::string(what) + " (read: " + shownText(token) + ")");
}

}  // namespace

JsonMesh parseJson(std::string_view text, const std::string& name) {
  JsonMesh mesh;
  MeshReader reader(mesh, name);
  nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
  return mesh;
}

}  // namespace orvmesh::view
