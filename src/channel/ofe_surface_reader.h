#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "channel/console.h"
#include "platform/ofeio.h"

namespace orvmesh::channel {

// Coordinates of all nodes of a file by number, in pieces: how many there are is known only when they have
// been read, since a header can say anything. Node 0 is the origin.
class FileNodes {
 public:
  FileNodes() { append(0, 0, 0); }

  void append(float x, float y, float z) {
    if (next_ == end_) [[unlikely]]
      addPiece();
    next_[0] = x;
    next_[1] = y;
    next_[2] = z;
    next_ += 3;
  }
  std::int32_t count() const {
    return static_cast<std::int32_t>(pieces_.size() * kPieceNodes -
                                     static_cast<std::size_t>(end_ - next_) / 3) -
           1;
  }
  bool holds(std::int32_t node) const { return 1 <= node && node <= count(); }
  const float* operator[](std::int32_t node) const {
    const auto n = static_cast<std::size_t>(node);
    return pieces_[n / kPieceNodes].get() + 3 * (n % kPieceNodes);
  }

 private:
  static constexpr std::size_t kPieceNodes = std::size_t{1} << 13;
  void addPiece();

  std::vector<std::unique_ptr<float[]>> pieces_;
  float* next_ = nullptr;
  float* end_ = nullptr;
};

// Opens, reads and closes one OFE file, for whoever looks at the nodes and at the faces of channels.
class OfeSurfaceReader {
 public:
  OfeSurfaceReader(const char* path, Console console)
      : path_(path == nullptr ? "" : path), console_(console) {}

  // 1, or the platform's result, told and kept in error().
  int open();
  // 1; 0 when something that was read is damaged: the operations above then ended early.
  int close();
  const std::string& error() const { return error_; }

  OFEIO_Manipulator& file() { return file_; }
  std::int32_t headerCount(OFEHeaderField field) const { return file_.header[field]; }

  // Nodes in the file's own lengths are to be multiplied by this: the header's scale factor, 1 where that is
  // 0.
  float scale() const { return scale_; }
  // All nodes of the file, times the scale factor.
  FileNodes readNodes();

 private:
  void refuse();

  std::string path_;
  Console console_;
  OFEIO_Manipulator file_;
  float scale_ = 1;
  std::string error_;
};

// A face of a channel's surface.
struct ChannelFace {
  static constexpr std::uint8_t kWall = 3;  // interfaces: between mold base and channel,
  static constexpr std::uint8_t kEnd = 4;   // at a channel's end or hose

  int nodes[4] = {};  // in the file's numbers; a triangle's third twice
  int interfaceId = 0;
  int surfaceCode = 0;
  int endCode = 0;
  int group = 0;
  std::int32_t entriesRead = 0;  // of the file, whatever their interface

  bool isWall() const { return interfaceId == kWall; }
  std::uint8_t vertexCount() const { return nodes[2] == nodes[3] ? 3 : 4; }

  // The file's next face of a channel; false at the end of its faces.
  bool read(OFEIO_Manipulator& file);
};

// How many faces were read.
struct FaceCounts {
  std::int32_t walls = 0, ends = 0;

  std::int32_t total() const { return walls + ends; }
  void add(const ChannelFace& face) { ++(face.isWall() ? walls : ends); }
  // The line for a face beyond the header's count.
  void tellExcess(const Console& console) const;
  void tellProgress(const Console& console) const;
};

}  // namespace orvmesh::channel
