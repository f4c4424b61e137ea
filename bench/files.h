#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvmesh::bench {

// A folder for the files of one benchmark program.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvmesh-bench-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string file(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// What `cp` does at the least: read and write every byte.
inline void copyFile(const std::string& from, const std::string& to) {
  std::vector<char> buffer(1 << 17);
  std::filesystem::remove(to);
  const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
  const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  for (ssize_t got = 0; (got = ::read(in, buffer.data(), buffer.size())) > 0;)
    if (::write(out, buffer.data(), static_cast<std::size_t>(got)) != got) break;
  ::close(in);
  ::close(out);
}

}  // namespace orvmesh::bench
