#pragma once

#include <string>
#include <string_view>

#include "view/ofe_json.h"

namespace orvmesh::view {

// Appends the number so that a JSON reader gets the same float back, sign of zero included; false for one
// that JSON cannot express.
bool appendJsonFloat(std::string& out, float value);
// Appends the text in quotes; false when it is not UTF-8.
bool appendJsonText(std::string& out, std::string_view text);

// Collects text and hands it on in large pieces.
class TextBuffer {
 public:
  explicit TextBuffer(const TextSink& sink) : sink_(sink) { text_.reserve(2 * kPiece); }
  // What is being collected; append to it, then call passOn().
  std::string& text() { return text_; }
  void passOn() {
    if (text_.size() >= kPiece) flush();
  }
  void flush() {
    if (!text_.empty()) sink_(text_);
    text_.clear();
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 18;
  const TextSink& sink_;
  std::string text_;
};

}  // namespace orvmesh::view
