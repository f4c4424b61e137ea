#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace orvmesh {

// A file that appears whole or not at all. Bytes go to a temporary file beside the target; commit() makes
// them durable and renames the file over the target. Until then, and whenever anything fails, the target is
// as it was and the temporary file is removed.
class AtomicFile {
 public:
  AtomicFile() = default;
  ~AtomicFile() { discard(); }
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Creates the temporary file. False when the target cannot be replaced: it is a directory or a device, its
  // folder is missing or not writable. A symbolic link is followed, so that the file it names is replaced.
  bool open(const std::string& target);
  bool isOpen() const { return descriptor_ >= 0; }

  // Appends at the end. False once any write has failed; later calls do nothing.
  bool append(const void* bytes, std::size_t size);
  // Overwrites bytes already appended (a header whose values are known only at the end).
  bool overwrite(std::uint64_t offset, const void* bytes, std::size_t size);
  std::uint64_t size() const { return size_; }

  // True when the complete file stands at the target's name.
  bool commit();
  void discard();

  // The first failure in words, without the file name; empty when there was none.
  const std::string& errorText() const { return error_; }

 private:
  bool fail(const char* what, int errorNumber);

  std::string target_;
  std::string temporary_;
  std::string error_;
  std::uint64_t size_ = 0;
  int descriptor_ = -1;
};

}  // namespace orvmesh
