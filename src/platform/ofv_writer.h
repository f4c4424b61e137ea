#pragma once

#include <cstdint>
#include <memory>
#include <span>

// Writer of OFV files, the finite-volume meshes of the suite. Node, face, cell and group numbers are 1-based;
// 0 means none. Nothing appears under the target's name before endWriting has returned 1.
class COrvOFVWriter {
 public:
  COrvOFVWriter();
  ~COrvOFVWriter();
  COrvOFVWriter(const COrvOFVWriter&) = delete;
  COrvOFVWriter& operator=(const COrvOFVWriter&) = delete;

  int beginWriting(const char* path);  // 1, or 0 when the target cannot be created
  // 3 coordinates per point.
  int writePoints(std::span<const double> xyz);
  // Nodes of face f are nodes[offsets[f-1]..offsets[f]); owner and neighbour are cells, neighbour 0 on a
  // boundary.
  int writeFaces(std::span<const std::int64_t> offsets, std::span<const std::int32_t> nodes,
                 std::span<const std::int32_t> owner, std::span<const std::int32_t> neighbour);
  // Cavity of every cell.
  int writeCells(std::span<const std::int32_t> cavity);
  // Channel group of every inlet.
  int writeInletGroups(std::span<const std::int32_t> group);
  int endWriting();  // 1 when the complete file stands at its name

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
