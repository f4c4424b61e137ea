// OFV files in memory.
#include "memory_files.h"
#include "platform/ofv_reader.h"
#include "platform/ofv_writer.h"

using namespace memory_platform;
using namespace orvmesh;

struct COrvOFVWriter::Implementation {
  std::unique_ptr<OfvFile> file;
  std::string path, error;
  int parts = 0;  // points, cavities, cells and faces written so far

  // The parts come in one order, the inlets, counted as 0, at any time.
  int accept(int part, const std::string& fault) {
    if (error.empty() && (!file || (part != 0 && part != ++parts))) error = "the parts are out of order";
    if (error.empty()) error = fault;
    return error.empty() ? 1 : 0;
  }
};

namespace {

template <class T>
void keep(std::vector<T>& to, std::span<const T> from) {
  to.assign(from.begin(), from.end());
}

}  // namespace

COrvOFVWriter::COrvOFVWriter() : implementation_(std::make_unique<Implementation>()) {}
COrvOFVWriter::~COrvOFVWriter() = default;
const std::string& COrvOFVWriter::errorText() const { return implementation_->error; }

int COrvOFVWriter::beginWriting(const char* path) {
  Implementation& self = *implementation_;
  self.error = path == nullptr || *path == '\0' || self.file ? "cannot be written" : "";
  if (!self.error.empty()) return 0;
  self.file = std::make_unique<OfvFile>();
  self.path = path;
  self.parts = 0;
  return 1;
}
int COrvOFVWriter::writePoints(std::span<const double> xyz) {
  Implementation& self = *implementation_;
  if (self.file) keep(self.file->xyz, xyz);
  return self.accept(1, self.file ? faultOfPoints(self.file->mesh()) : "");
}
int COrvOFVWriter::writeCavities(std::span<const std::int32_t> number, std::span<const std::int32_t> kind) {
  Implementation& self = *implementation_;
  if (self.file) keep(self.file->cavityNumber, number);
  if (self.file) keep(self.file->cavityKind, kind);
  return self.accept(2, self.file ? faultOfCavities(self.file->mesh()) : "");
}
int COrvOFVWriter::writeCells(std::span<const std::int32_t> cavity) {
  Implementation& self = *implementation_;
  if (self.file) keep(self.file->cellCavity, cavity);
  return self.accept(3, self.file ? faultOfCells(self.file->mesh()) : "");
}
int COrvOFVWriter::writeFaces(std::span<const std::int64_t> offsets, std::span<const std::int32_t> nodes,
                              std::span<const std::int32_t> owner, std::span<const std::int32_t> neighbour) {
  Implementation& self = *implementation_;
  if (self.file) {
    keep(self.file->offsets, offsets);
    keep(self.file->nodes, nodes);
    keep(self.file->owner, owner);
    keep(self.file->neighbour, neighbour);
  }
  return self.accept(4, self.file ? faultOfFaces(self.file->mesh()) : "");
}
int COrvOFVWriter::writeInletGroups(std::span<const std::int32_t> inlet,
                                    std::span<const std::int32_t> group) {
  Implementation& self = *implementation_;
  if (self.file) keep(self.file->inlet, inlet);
  if (self.file) keep(self.file->group, group);
  return self.accept(0, self.file ? faultOfInlets(self.file->mesh()) : "");
}
int COrvOFVWriter::endWriting() {
  Implementation& self = *implementation_;
  const auto file = std::move(self.file);
  if (file && self.error.empty() && self.parts != 4) self.error = "parts are missing";
  if (!file || !self.error.empty()) return 0;
  files()[self.path] = std::make_shared<const OfvFile>(*file);
  return 1;
}

struct COrvOFVReader::Implementation {
  std::shared_ptr<const OfvFile> file;
  OFVMesh mesh;
  std::string error;
};
COrvOFVReader::COrvOFVReader() : implementation_(std::make_unique<Implementation>()) {}
COrvOFVReader::~COrvOFVReader() = default;
int COrvOFVReader::open(const char* path) {
  Implementation& self = *implementation_;
  self.file = find<OfvFile>(path);
  self.mesh = self.file ? self.file->mesh() : OFVMesh{};
  self.error = self.file ? "" : "there is no such OFV file in memory";
  return self.file ? 1 : 0;
}
const OFVMesh& COrvOFVReader::mesh() const { return implementation_->mesh; }
const std::string& COrvOFVReader::errorText() const { return implementation_->error; }
bool COrvOFVReader::isOFV(const char* path) { return find<OfvFile>(path) != nullptr; }
