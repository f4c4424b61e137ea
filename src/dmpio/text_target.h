#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/atomic_file.h"
#include "dmpio/layout.h"

namespace orvmesh::dmpio {

// The text form as it is written. Copies share the file.
class TextTarget {
 public:
  bool open(const char* path);
  // False once the file was completed or a write has failed.
  bool isOpen() const { return out_ && out_->file.isOpen(); }
  void writeHeader(Header header);
  void startBlock(const BlockRow& row) { put(row.written); }
  void fillIn(const BlockRow& row) { put(row.filledIn); }
  void writeOne(int value);
  void writePair(int first, int second);
  void beginGroup(int itemCount);
  void writeItem(int first, int second);
  void endGroup() { put("\n"); }
  // True when the complete file stands at its name.
  bool finish();
  const std::string& errorText() const { return out_->file.errorText(); }

 private:
  struct Out {
    AtomicFile file;
    std::vector<char> bytes = std::vector<char>(kBufferSize);
    std::size_t used = 0;

    // Where the next piece of text goes; there is room for the longest one.
    char* place() {
      if (used > kBufferSize - kLongestPiece) flush();
      return bytes.data() + used;
    }
    void setEnd(const char* end) { used = static_cast<std::size_t>(end - bytes.data()); }
    void flush();
  };
  static constexpr std::size_t kBufferSize = std::size_t{1} << 18;
  static constexpr std::size_t kLongestPiece = 64;

  void put(std::string_view text);

  std::shared_ptr<Out> out_;  // null before the first file
};

}  // namespace orvmesh::dmpio
