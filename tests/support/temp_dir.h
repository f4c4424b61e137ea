#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace orvmesh::test {

// A fresh folder that goes away, with all it holds, at the end of the test.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvmesh-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  operator const std::string&() const { return path_; }

 private:
  std::string path_;
};

// To be the base of a test that runs in a folder of its own.
class OwnFolder {
 public:
  OwnFolder() { std::filesystem::current_path(dir.path()); }
  ~OwnFolder() { std::filesystem::current_path(previous_); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

 protected:
  TempDir dir;

 private:
  std::filesystem::path previous_ = std::filesystem::current_path();
};

}  // namespace orvmesh::test
