#pragma once

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

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

// `cp` itself, so that the ratios are those of anyone's command line.
inline void copyFile(const std::string& from, const std::string& to) {
  const char* const arguments[] = {"cp", from.c_str(), to.c_str(), nullptr};
  pid_t child = 0;
  int status = 1;
  if (::posix_spawnp(&child, "cp", nullptr, nullptr, const_cast<char**>(arguments), environ) != 0 ||
      ::waitpid(child, &status, 0) != child || status != 0)
    throw std::runtime_error("cp failed");
}

}  // namespace orvmesh::bench
