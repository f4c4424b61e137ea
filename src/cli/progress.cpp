#include "cli/progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <utility>

namespace orvmesh::cli {

ProgressLine::ProgressLine(std::string what) : what_(std::move(what)) {
  if (::isatty(STDERR_FILENO) == 1) ticker_ = std::thread([this] { tick(); });
}

ProgressLine::~ProgressLine() {
  if (!ticker_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  stop_.notify_one();
  ticker_.join();
}

void ProgressLine::tick() {
  std::unique_lock lock(mutex_);
  for (int seconds = 1;; ++seconds) {
    if (stop_.wait_for(lock, std::chrono::seconds(1), [this] { return stopping_; })) {
      if (seconds > 1) std::fputs("\r\033[K", stderr);
      return;
    }
    std::fprintf(stderr, "\r\033[K%s ... %d s", what_.c_str(), seconds);
    std::fflush(stderr);
  }
}

}  // namespace orvmesh::cli
