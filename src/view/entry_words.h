#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace orvmesh::view {

// Block entries packed into 32-bit words, so that millions of them cost no heap object each. An integer, a
// tag and a float take one word, lists of a fixed length their values, other lists a count and their values,
// a text its length in bytes and its bytes with a closing zero.
class EntryWords {
 public:
  void clear() { words_.clear(); }
  bool empty() const { return words_.empty(); }
  const std::int32_t* data() const { return words_.data(); }
  std::size_t size() const { return words_.size(); }

  void putInt(std::int32_t value) { words_.push_back(value); }
  void putFloat(float value) { words_.push_back(std::bit_cast<std::int32_t>(value)); }
  void putInts(std::span<const std::int32_t> values) {
    words_.insert(words_.end(), values.begin(), values.end());
  }
  void putList(std::span<const std::int32_t> values) {
    putInt(static_cast<std::int32_t>(values.size()));
    putInts(values);
  }
  void putZeros(std::size_t count) { words_.resize(words_.size() + count); }
  void putText(std::string_view text) {
    putInt(static_cast<std::int32_t>(text.size()));
    const auto start = words_.size();
    putZeros(text.size() / 4 + 1);
    if (!text.empty()) std::memcpy(words_.data() + start, text.data(), text.size());
  }
  void append(const EntryWords& other) { putInts(other.words_); }

 private:
  std::vector<std::int32_t> words_;
};

// Takes the values of packed entries in the order in which they were put.
class WordCursor {
 public:
  explicit WordCursor(const EntryWords& words) : at_(words.data()) {}

  std::int32_t takeInt() { return *at_++; }
  float takeFloat() { return std::bit_cast<float>(takeInt()); }
  std::span<const std::int32_t> takeInts(std::size_t count) {
    const std::span values(at_, count);
    at_ += count;
    return values;
  }
  std::span<const std::int32_t> takeList() { return takeInts(static_cast<std::size_t>(takeInt())); }
  // Ends with a zero byte; valid as long as the words are.
  std::string_view takeText() {
    const auto size = static_cast<std::size_t>(takeInt());
    return {reinterpret_cast<const char*>(takeInts(size / 4 + 1).data()), size};
  }

 private:
  const std::int32_t* at_;
};

}  // namespace orvmesh::view
