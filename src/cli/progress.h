#pragma once

#include <string>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace orvmesh::cli {

// While it lives: after one second, a line on standard error that says what is going on and for how long; on
// a terminal only, and wiped at the end.
class ProgressLine {
 public:
  explicit ProgressLine(std::string what);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

 private:
  void tick();

  std::string what_;
  std::mutex mutex_;
  std::condition_variable stop_;
  bool stopping_ = false;
  std::thread ticker_;
};

}  // namespace orvmesh::cli
