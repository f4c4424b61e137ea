#include "platform/ofv_writer.h"

#include <initializer_list>

#include "embedded/block_writer.h"
#include "embedded/ofv_layout.h"

using namespace orvmesh;
using namespace orvmesh::embedded;

struct COrvOFVWriter::Implementation {
  BlockWriter file;
  std::array<bool, kOfvBlockCount> written{};
  std::string error;
  // What later parts are held against: the counts of points, cavities and cells.
  OFVMesh mesh;

  bool fail(const std::string& text) {
    if (error.empty()) error = text;
    return false;
  }
  // A file that could not be written any further has closed itself.
  bool failAsClosed() { return fail(file.errorText().empty() ? "no file is open" : file.errorText()); }
  // Is it the turn of this block, whose predecessor is that one?
  bool accepts(OfvBlock block, OfvBlock after) {
    const std::string name = kOfvLayout[block].name;
    if (!file.isOpen()) return failAsClosed();
    if (!error.empty()) return false;
    if (written[block]) return fail("the " + name + " are there already");
    return written[after] || fail("the " + name + " come after the " + kOfvLayout[after].name);
  }
  bool holds(const std::string& fault) { return fault.empty() || fail(fault); }

  int put(OfvBlock block, std::initializer_list<std::span<const std::byte>> columns) {
    file.beginBlock(kOfvLayout[block].id);
    const char* type = kOfvLayout[block].columns.data();
    for (const auto bytes : columns) {
      file.beginColumn(*type++);
      file.append(bytes.data(), bytes.size());
    }
    file.endBlock();
    written[block] = true;
    return 1;
  }
};

COrvOFVWriter::COrvOFVWriter() : implementation_(std::make_unique<Implementation>()) {}
COrvOFVWriter::~COrvOFVWriter() = default;

const std::string& COrvOFVWriter::errorText() const {
  return implementation_->error.empty() ? implementation_->file.errorText() : implementation_->error;
}

int COrvOFVWriter::beginWriting(const char* path) {
  Implementation& self = *implementation_;
  if (path == nullptr || self.file.isOpen())
    return self.fail(path == nullptr ? "no path was given" : "another file is still open") ? 1 : 0;
  self.written = {};
  self.error.clear();
  self.mesh = {};
  if (!self.file.open(path)) return 0;
  return self.put(kOfvFormat, {std::as_bytes(std::span(&kOfvVersion, 1))});
}

int COrvOFVWriter::writePoints(std::span<const double> xyz) {
  Implementation& self = *implementation_;
  self.mesh.xyz = xyz;
  if (!self.accepts(kOfvPoints, kOfvFormat) || !self.holds(faultOfPoints(self.mesh))) return 0;
  return self.put(kOfvPoints, {std::as_bytes(xyz)});
}

int COrvOFVWriter::writeCavities(std::span<const std::int32_t> number, std::span<const std::int32_t> kind) {
  Implementation& self = *implementation_;
  self.mesh.cavityNumber = number;
  self.mesh.cavityKind = kind;
  if (!self.accepts(kOfvCavities, kOfvPoints) || !self.holds(faultOfCavities(self.mesh))) return 0;
  return self.put(kOfvCavities, {std::as_bytes(number), std::as_bytes(kind)});
}

int COrvOFVWriter::writeCells(std::span<const std::int32_t> cavity) {
  Implementation& self = *implementation_;
  self.mesh.cellCavity = cavity;
  if (!self.accepts(kOfvCells, kOfvCavities) || !self.holds(faultOfCells(self.mesh))) return 0;
  return self.put(kOfvCells, {std::as_bytes(cavity)});
}

int COrvOFVWriter::writeFaces(std::span<const std::int64_t> offsets, std::span<const std::int32_t> nodes,
                              std::span<const std::int32_t> owner, std::span<const std::int32_t> neighbour) {
  Implementation& self = *implementation_;
  self.mesh.faceOffsets = offsets;
  self.mesh.faceNodes = nodes;
  self.mesh.owner = owner;
  self.mesh.neighbour = neighbour;
  if (!self.accepts(kOfvFaces, kOfvCells) || !self.holds(faultOfFaces(self.mesh))) return 0;
  return self.put(kOfvFaces, {std::as_bytes(offsets), std::as_bytes(nodes), std::as_bytes(owner),
                              std::as_bytes(neighbour)});
}

int COrvOFVWriter::writeInletGroups(std::span<const std::int32_t> inlet,
                                    std::span<const std::int32_t> group) {
  Implementation& self = *implementation_;
  self.mesh.inletID = inlet;
  self.mesh.inletGroup = group;
  if (!self.accepts(kOfvInlets, kOfvFormat) || !self.holds(faultOfInlets(self.mesh))) return 0;
  return self.put(kOfvInlets, {std::as_bytes(inlet), std::as_bytes(group)});
}

int COrvOFVWriter::endWriting() {
  Implementation& self = *implementation_;
  if (!self.file.isOpen()) return self.failAsClosed() ? 1 : 0;
  if (self.error.empty() && !self.written[kOfvInlets]) writeInletGroups({}, {});
  if (self.error.empty() && !self.written[kOfvFaces])
    self.fail("points, cavities, cells or faces are missing");
  const bool complete = self.error.empty() && self.file.commit();
  self.file.discard();
  return complete ? 1 : 0;
}
