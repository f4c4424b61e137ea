#pragma once

#include <memory>
#include <span>
#include <string>

#include "platform/ofv_mesh.h"

// Writer of OFV files, the finite-volume meshes of the suite. Nothing appears under the target's name before
// endWriting has returned 1.
//
// The parts come in this order, each once: points, cavities, cells, faces; inlets, where there are any, at
// any time. orvmesh::OFVMesh says what the arrays hold. Each operation returns 1, or 0 when it is out of
// order or the arrays do not fit (sizes, ranges, finite coordinates); the file can then not be completed.
class COrvOFVWriter {
 public:
  COrvOFVWriter();
  ~COrvOFVWriter();
  COrvOFVWriter(const COrvOFVWriter&) = delete;
  COrvOFVWriter& operator=(const COrvOFVWriter&) = delete;

  int beginWriting(const char* path);  // 1, or 0 when the target cannot be created or a file is open
  int writePoints(std::span<const double> xyz);
  int writeCavities(std::span<const std::int32_t> number, std::span<const std::int32_t> kind);
  int writeCells(std::span<const std::int32_t> cavity);
  int writeFaces(std::span<const std::int64_t> offsets, std::span<const std::int32_t> nodes,
                 std::span<const std::int32_t> owner, std::span<const std::int32_t> neighbour);
  int writeInletGroups(std::span<const std::int32_t> inlet, std::span<const std::int32_t> group);
  int endWriting();  // 1 when the complete file stands at its name

  // The first failure since beginWriting in one line, without the file's name; empty when there was none.
  const std::string& errorText() const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

// Writes all parts of a mesh; 1 when the complete file stands at the name, else 0 and the writer tells why.
int writeWholeOFV(COrvOFVWriter& writer, const char* path, const orvmesh::OFVMesh& mesh);
