#pragma once

#include <memory>
#include <string>

#include "platform/ofv_mesh.h"

// Reader of OFV files. What it hands out has been proven: sizes, ranges, finite coordinates, and whatever the
// file keeps against damage; not how faces and cells fit together (orvmesh::faultOfRelations).
class COrvOFVReader {
 public:
  COrvOFVReader();
  ~COrvOFVReader();
  COrvOFVReader(const COrvOFVReader&) = delete;
  COrvOFVReader& operator=(const COrvOFVReader&) = delete;

  // Reads a whole file: 1, or 0 when it is refused; the mesh is then empty.
  int open(const char* path);
  // Valid as long as the reader, until the next open.
  const orvmesh::OFVMesh& mesh() const;
  // Why the file was refused, in one line without its name; empty when it was not.
  const std::string& errorText() const;

  // Does the file begin as an OFV file does? Nothing is proven by that.
  static bool isOFV(const char* path);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
