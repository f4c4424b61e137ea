#include "dmpio/text_source.h"

#include <array>

namespace orvmesh::dmpio {
namespace {

constexpr int kVersionWithoutNumber = 1;

bool isNumberLine(const Line& line) { return line.text().front() != '\n' && !line.contains("["); }

void scanHeaderLine(const Line& line, const HeaderLine& shape, Header header) {
  std::array<int, 3> values{};
  const int scanned = scanNumbers(line.text(), values.data(), shape.count);
  for (int i = 0; i < scanned; ++i) header[shape.first + i] = values[static_cast<std::size_t>(i)];
}

}  // namespace

int TextSource::versionOf(TextInput& input) {
  Line line;
  int version = kVersionWithoutNumber;
  for (input.readLine(line); input.readLine(line);) {
    if (!isNumberLine(line)) continue;
    (void)scanNumbers(line.text(), &version, 1);
    break;
  }
  return version;
}

bool TextSource::open(const char* path) {
  // A file of its own: copies of this object may still read the one before.
  input_ = std::make_shared<TextInput>();
  return input_->open(path);
}

bool TextSource::scanTo(std::string_view heading) {
  while (!line_.contains(heading))
    if (!input_->readLine(line_)) return false;
  return true;
}

bool TextSource::readHeader(Header header) {
  if (!input_->readLine(line_) || line_.text().front() != '1' || !scanTo(kHeaderHeading)) return false;
  for (std::size_t k = 0; input_->readLine(line_);) {
    if (line_.contains("[")) return true;
    if (line_.text().front() == '\n' || k >= kHeaderLines.size()) continue;
    const HeaderLine& shape = kHeaderLines[k++];
    if (shape.first < headerValues(Encoding::Text, header[kVersion])) scanHeaderLine(line_, shape, header);
  }
  return false;
}

std::optional<int> TextSource::openBlock(const BlockRow& row, Header header) {
  if (!scanTo(row.searched)) return std::nullopt;
  return header[row.textCount];
}

bool TextSource::readNumbers(int* values, int count) {
  if (input_->readPlainLine(values, count)) {
    line_.clear();  // no heading is looked for in it
    return true;
  }
  return input_->readLine(line_) && scanNumbers(line_.text(), values, count) > 0;
}

bool TextSource::readPair(int& first, int& second) {
  std::array<int, 2> values{first, second};
  if (!readNumbers(values.data(), 2)) return false;
  first = values[0];
  second = values[1];
  return true;
}

std::optional<int> TextSource::readGroupCount() {
  int count = 0;
  if (!input_->readNumber(count)) return std::nullopt;
  return count;
}

bool TextSource::readItem(int& first, int& second) {
  int values[2];
  if (!input_->readNumber(values[0]) || !input_->readNumber(values[1])) return false;
  first = values[0];
  second = values[1];
  return true;
}

}  // namespace orvmesh::dmpio
