#include <bitset>
#include <cstring>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "base/text_number.h"
#include "platform/cofedata.h"
#include "platform/header_counts.h"
#include "view/json_complaint.h"
#include "view/json_text.h"
#include "view/ofe_json.h"

namespace orvmesh::view {
namespace {

using FieldSet = std::bitset<OFEHeader::kWords>;

// The fields that `load` would fill in. Reading the model also refuses what is damaged before anything is
// printed.
FieldSet filledFields(const std::string& path) {
  COFEData data;
  if (data.ReadDataBin(path.c_str(), nullptr, 0, false) != 1) throw Failure(path, data.errorText());
  FieldSet fields;
  for (const FieldCount& row : headerCounts(contentOf(data.model())))
    if (row.count != 0) fields.set(static_cast<std::size_t>(row.field));
  return fields;
}

// Prints the values of a file and knows where it is when one has no JSON form.
class Dump {
 public:
  Dump(const std::string& path, const TextSink& sink) : path_(path), buffer_(sink), out_(buffer_.text()) {}

  void print();

 private:
  void printHeader(const FieldSet& filled);
  void printHeaderText(const char* key, const std::string& text);
  void printBlock(const BlockShape& shape);
  void printSingle(const BlockShape& shape);
  void printRow(const BlockShape& shape, WordCursor& entry);
  void printObject(const BlockShape& shape, WordCursor& entry);
  void printList(const Argument& argument, WordCursor& entry);
  void printDictionary(std::int32_t pairs, WordCursor& entry);
  void printValue(ValueType type, WordCursor& entry);
  void printFloat(float value);
  void printText(std::string_view text);
  bool readEntry(const BlockShape& shape);
  std::string place() const { return jsonPath(*shape_, entryNo_, key_, -1); }

  const std::string& path_;
  TextBuffer buffer_;
  std::string& out_;
  OFEIO_Manipulator file_;
  EntryWords entry_;
  // Of the value being printed.
  const BlockShape* shape_ = nullptr;
  std::int64_t entryNo_ = -1;
  std::string_view key_;
};

void Dump::print() {
  const FieldSet filled = filledFields(path_);
  if (file_.beginReading(path_.c_str(), nullptr, 0) != 1) throw Failure(path_, file_.errorText());
  out_ += "{\"format\": \"ofe-json\", \"version\": 1,\n";
  printHeader(filled);
  for (int block = 0; block < kBlockCount; ++block) {
    shape_ = &blockShape(block);
    entryNo_ = -1;
    if (shape_->single)
      printSingle(*shape_);
    else
      printBlock(*shape_);
  }
  file_.endReading();
  out_ += "}\n";
  buffer_.flush();
}

void Dump::printHeader(const FieldSet& filled) {
  const OFEHeader& header = file_.header;
  static constexpr BlockShape kHeader{"header", nullptr, nullptr};
  shape_ = &kHeader;
  out_ += "\"header\": {\"fields\": {";
  const char* separator = "";
  for (int field = 0; field < OFEHeader::kWords; ++field) {
    if (header[field] == 0 && !filled.test(static_cast<std::size_t>(field))) continue;
    const std::string name = "fields." + std::to_string(field);
    key_ = name;
    out_.append(separator).append("\"");
    appendInt(out_, field);
    out_ += "\": ";
    if (OFEHeader::isFloatField(field))
      printFloat(header.floatField(field));
    else
      appendInt(out_, header[field]);
    separator = ", ";
  }
  out_ += "}";
  printHeaderText("source", header.source);
  printHeaderText("dateTime", header.dateTime);
  printHeaderText("unit", header.unit);
  printHeaderText("remark", header.remark);
  out_ += "}";
}

void Dump::printHeaderText(const char* key, const std::string& text) {
  key_ = key;
  out_.append(",\n  \"").append(key).append("\": ");
  printText(text);
}

// One entry a line.
void Dump::printBlock(const BlockShape& shape) {
  out_.append(",\n\"").append(shape.key).append("\": [");
  while (readEntry(shape)) {
    out_ += entryNo_ == 0 ? "\n" : ",\n";
    WordCursor entry(entry_);
    if (shape.isObject())
      printObject(shape, entry);
    else
      printRow(shape, entry);
    buffer_.passOn();
  }
  out_ += "]";
}

void Dump::printSingle(const BlockShape& shape) {
  if (!readEntry(shape)) return;
  out_.append(",\n\"").append(shape.key).append("\": ");
  WordCursor entry(entry_);
  printRow(shape, entry);
  if (readEntry(shape)) refuse(path_, shape.key, "more than one entry", "at most one");
}

bool Dump::readEntry(const BlockShape& shape) {
  entry_.clear();
  if (shape.read(file_, entry_)) {
    ++entryNo_;
    return true;
  }
  if (!file_.errorText().empty()) throw Failure(path_, file_.errorText());
  return false;
}

void Dump::printRow(const BlockShape& shape, WordCursor& entry) {
  key_ = {};
  out_ += '[';
  for (const char* type = shape.row; *type != '\0'; ++type) {
    if (type != shape.row) out_ += ", ";
    printValue(ValueType{*type}, entry);
  }
  out_ += ']';
}

void Dump::printObject(const BlockShape& shape, WordCursor& entry) {
  const char* separator = "{\"";
  for (const Argument& argument : shape.arguments) {
    std::int32_t pairs = 0;
    if (argument.type == ValueType::Dictionary && (pairs = entry.takeInt()) == 0) continue;
    key_ = argument.key;
    out_.append(separator).append(argument.key).append("\": ");
    separator = ", \"";
    if (argument.type == ValueType::Dictionary)
      printDictionary(pairs - 1, entry);
    else if (argument.list)
      printList(argument, entry);
    else
      printValue(argument.type, entry);
  }
  out_ += '}';
}

void Dump::printList(const Argument& argument, WordCursor& entry) {
  const auto length = argument.fixedLength() ? argument.length() : static_cast<std::size_t>(entry.takeInt());
  out_ += '[';
  for (std::size_t i = 0; i < length; ++i) {
    if (i > 0) out_ += ", ";
    printValue(argument.type, entry);
  }
  out_ += ']';
}

void Dump::printDictionary(std::int32_t pairs, WordCursor& entry) {
  out_ += '{';
  for (std::int32_t i = 0; i < pairs; ++i) {
    if (i > 0) out_ += ", ";
    printText(entry.takeText());
    out_ += ": ";
    printText(entry.takeText());
  }
  out_ += '}';
}

void Dump::printValue(ValueType type, WordCursor& entry) {
  if (type == ValueType::Int)
    appendInt(out_, entry.takeInt());
  else if (type == ValueType::Tag)
    appendInt(out_, static_cast<std::uint32_t>(entry.takeInt()));
  else if (type == ValueType::Float)
    printFloat(entry.takeFloat());
  else
    printText(entry.takeText());
}

void Dump::printFloat(float value) {
  if (appendJsonFloat(out_, value)) return;
  std::string text;
  appendExact(text, value);
  refuse(path_, place(), text, "a finite number, JSON has no other");
}

void Dump::printText(std::string_view text) {
  if (!appendJsonText(out_, text)) refuse(path_, place(), '"' + shownText(text) + '"', "UTF-8 text");
}

}  // namespace

void dumpJson(const std::string& ofePath, const TextSink& sink) { Dump(ofePath, sink).print(); }

std::string dumpJson(const std::string& ofePath) {
  std::string text;
  dumpJson(ofePath, [&](std::string_view piece) { text += piece; });
  return text;
}

void dumpJsonFile(const std::string& ofePath, const std::string& jsonPath) {
  AtomicFile file;
  const auto check = [&](bool done) {
    if (!done) throw Failure(jsonPath, file.errorText());
  };
  check(file.open(jsonPath));
  dumpJson(ofePath, [&](std::string_view piece) { check(file.append(piece.data(), piece.size())); });
  check(file.commit());
}

}  // namespace orvmesh::view
