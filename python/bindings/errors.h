#pragma once

#include <pybind11/pybind11.h>

#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/failure.h"

namespace orvmesh::python {

// What becomes orvmesh.Error: what sort of failure (see there), the file, and a line without the file's name.
class Fault : public std::runtime_error {
 public:
  Fault(const char* code, std::string file, const std::string& text)
      : std::runtime_error(text), code_(code), file_(std::move(file)) {}
  const char* code() const { return code_; }
  const std::string& file() const { return file_; }

 private:
  const char* code_;
  std::string file_;
};

inline constexpr const char* kSource = "source";
inline constexpr const char* kTarget = "target";
inline constexpr const char* kNothingToDo = "nothing-to-do";
inline constexpr const char* kArgument = "argument";

// What a job reads and writes; empty where it does neither.
struct Paths {
  std::string source, target;
};

// A line that begins with one of the paths, as a fault of that file.
Fault faultOf(const std::string& line, const Paths& paths);

// Runs a job without the interpreter's lock. It must not touch Python.
template <class Job>
auto unlocked(const Paths& paths, const Job& job) {
  const pybind11::gil_scoped_release released;
  try {
    return job();
  } catch (const Failure& failure) {
    throw faultOf(failure.what(), paths);
  }
}

// Operations that leave a log in the current directory or rewrite a file in place take turns. To be taken
// without the interpreter's lock.
std::mutex& oneAtATime();

}  // namespace orvmesh::python
