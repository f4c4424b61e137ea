#include "dmpio/text_target.h"

#include <algorithm>
#include <charconv>

namespace orvmesh::dmpio {
namespace {

// Room for it is the caller's business.
char* putNumber(char* at, int value) {
  constexpr int kMostCharacters = 11;
  return std::to_chars(at, at + kMostCharacters, value).ptr;
}

}  // namespace

bool TextTarget::open(const char* path) {
  // A file of its own: copies of this object may still write the one before.
  out_ = std::make_shared<Out>();
  return out_->file.open(path);
}

void TextTarget::Out::flush() {
  (void)file.append(bytes.data(), used);
  used = 0;
}

void TextTarget::put(std::string_view text) {
  static_assert(kLongestPiece >= 64);  // every heading fits
  out_->setEnd(std::copy(text.begin(), text.end(), out_->place()));
}

void TextTarget::writeHeader(Header header) {
  put("1\n");
  put(kHeaderHeading);
  put("\n");
  for (const HeaderLine& line : kHeaderLines) {
    if (line.first >= headerValues(Encoding::Text, header[kVersion])) break;
    for (int i = 0; i < line.count; ++i) {
      out_->setEnd(putNumber(out_->place(), header[line.first + i]));
      put(i + 1 < line.count ? " " : "\n");
    }
  }
}

void TextTarget::writeOne(int value) {
  char* end = putNumber(out_->place(), value);
  *end++ = '\n';
  out_->setEnd(end);
}

void TextTarget::writePair(int first, int second) {
  char* end = putNumber(out_->place(), first);
  *end++ = ' ';
  end = putNumber(end, second);
  *end++ = '\n';
  out_->setEnd(end);
}

void TextTarget::beginGroup(int itemCount) { out_->setEnd(putNumber(out_->place(), itemCount)); }

void TextTarget::writeItem(int first, int second) {
  char* end = out_->place();
  *end++ = ' ';
  end = putNumber(end, first);
  *end++ = ' ';
  end = putNumber(end, second);
  out_->setEnd(end);
}

bool TextTarget::finish() {
  put("[EOF]\n");
  out_->flush();
  return out_->file.commit();
}

}  // namespace orvmesh::dmpio
