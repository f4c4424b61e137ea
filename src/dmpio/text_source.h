#pragma once

#include <memory>
#include <optional>
#include <string>

#include "dmpio/layout.h"
#include "dmpio/text_input.h"

namespace orvmesh::dmpio {

// The text form as it is read: forward only. Copies share the file and have a last line each.
class TextSource {
 public:
  // The first number after the first line of the file.
  static int versionOf(TextInput& input);

  bool open(const char* path);
  void close() { input_->close(); }
  // Of a file just opened; -1 when it is empty.
  int firstByte() { return input_->peek(); }
  // Sets the values that the version in the file has; false when the header is not there or does not end.
  bool readHeader(Header header);
  // Scans forward to the block's heading; the number of entries that the header announces, if it is found.
  std::optional<int> openBlock(const BlockRow& row, Header header);
  // False at the end of the file and at a line without a number.
  bool readOne(int& value) { return readNumbers(&value, 1); }
  bool readPair(int& first, int& second);
  std::optional<int> readGroupCount();
  bool readItem(int& first, int& second);

  const std::string& errorText() const { return input_->errorText(); }

 private:
  bool scanTo(std::string_view heading);
  // Sets as many of the values as the next line has, which must be one at least.
  bool readNumbers(int* values, int count);

  std::shared_ptr<TextInput> input_ = std::make_shared<TextInput>();
  Line line_;
};

}  // namespace orvmesh::dmpio
