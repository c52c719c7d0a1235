// Gives the main queue its turns on whatever thread runs it.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

#include "PlatformLinux/System/WorkQueue.h"

namespace lanternfold {

class MainThreadRunner final : public QueueRunner {
 public:
  MainThreadRunner();
  ~MainThreadRunner() override;

  void schedule(WorkQueue& queue) override;

  /// Returns whether `stop` ended the run; without a deadline nothing else does.
  bool run(std::optional<std::chrono::steady_clock::time_point> deadline);
  /// Ends the current run, or else the next one at once. Any thread.
  void stop();

 private:
  struct Loop;
  const std::unique_ptr<Loop> loop_;
  std::atomic<bool> running_ = false;
};

}  // namespace lanternfold
