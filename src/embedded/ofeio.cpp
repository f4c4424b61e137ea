#include "platform/ofeio.h"

#include <algorithm>

#include "embedded/log_file.h"
#include "embedded/ofeio_implementation.h"

bool OFEIO_Dictionary::AddEntry(const char* key, const char* value) {
  if (key == nullptr || value == nullptr) return false;
  entries_[key] = value;
  return true;
}

OFEIO_Manipulator::OFEIO_Manipulator() : implementation_(std::make_unique<Implementation>()) {}
OFEIO_Manipulator::~OFEIO_Manipulator() = default;

const std::string& OFEIO_Manipulator::errorText() const {
  const Implementation& self = *implementation_;
  if (!self.error.empty()) return self.error;
  return self.reader ? self.reader->file().errorText() : self.writer.errorText();
}

int OFEIO_Manipulator::fileVersion() const { return implementation_->version; }

bool OFEIO_Manipulator::isWritableVersion(int version) {
  const auto known = orvmesh::embedded::writableVersions();
  return std::find(known.begin(), known.end(), version) != known.end();
}

const char* OFEIO_Manipulator::writableVersionsText() { return orvmesh::embedded::writableVersionsAsText(); }

int OFEIO_Manipulator::beginReading(const char* path, const char* logPath, int secondBlockOnly) {
  Implementation& self = *implementation_;
  if (path == nullptr || self.reader || self.writer.isWriting()) {
    self.error = path == nullptr ? "no path was given" : "another file is still open";
    return 0;
  }
  self.error.clear();
  self.reader.emplace();
  if (self.reader->open(path, secondBlockOnly == 1)) {
    header = self.reader->file().header();
    self.version = self.reader->file().version();
    return 1;
  }
  self.error = self.reader->file().errorText();
  self.reader.reset();
  header = {};
  self.version = 0;
  if (logPath != nullptr)
    orvmesh::embedded::appendToLog(logPath, std::string(path) + ": " + self.error + "\n", path);
  return 0;
}

int OFEIO_Manipulator::endReading() {
  Implementation& self = *implementation_;
  if (!self.reader) return 0;
  if (self.error.empty()) self.error = self.reader->file().errorText();
  self.reader.reset();
  return 1;
}

int OFEIO_Manipulator::beginWriting(const char* path, int version, int) {
  Implementation& self = *implementation_;
  if (!isWritableVersion(version)) {
    self.error =
        "version " + std::to_string(version) + " cannot be written (legal: " + writableVersionsText() + ")";
    return -1;
  }
  if (path == nullptr || self.reader || self.writer.isWriting()) {
    self.error = path == nullptr ? "no path was given" : "another file is still open";
    return 0;
  }
  self.error.clear();
  return self.writer.begin(path, version) ? 1 : 0;
}

int OFEIO_Manipulator::endWriting() { return implementation_->writer.end(header) ? 1 : 0; }
