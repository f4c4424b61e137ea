#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "embedded/ofe_reader.h"

namespace orvmesh::embedded {

// How far a block has been read, entry by entry.
class EntryCursor {
 public:
  explicit EntryCursor(const BlockView& view) : view_(view) {}
  EntryCursor() = default;

  bool atEnd() const { return next_ >= view_.count(); }
  void step() { ++next_; }

  // The entry that step() came to last: its index and its values.
  int index() const { return next_ - 1; }
  template <class T>
  const T* at(std::size_t column, int width) const {
    return view_.at<T>(column, next_ - 1, width);
  }
  template <class T>
  T value(std::size_t column) const {
    return *at<T>(column, 1);
  }
  std::span<const std::int32_t> elementNodes() const;
  std::span<const std::int32_t> list() const { return view_.piece<std::int32_t>(next_ - 1); }
  // The pool's next text, valid until the entry after this one is read (a name) or until the next call (a
  // dictionary's).
  const char* name();
  std::string text() { return std::string(view_.text(nextText_++)); }

 private:
  BlockView view_;
  std::int32_t next_ = 0;
  std::int64_t nextText_ = 0;
  std::string name_;
};

// Reads an OFE file entry by entry, its blocks in any order.
class EntryReader {
 public:
  bool open(const std::string& path, bool secondPartOnly) { return file_.open(path, secondPartOnly); }
  const OfeReader& file() const { return file_; }

  // The block at its next entry; null at the end of the block and when it is damaged.
  EntryCursor* advance(Block block);

 private:
  struct State {
    bool opened = false;
    EntryCursor cursor;
  };
  OfeReader file_;
  std::array<State, kBlockCount> states_;
};

}  // namespace orvmesh::embedded
