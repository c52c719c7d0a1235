// One queue of `AsioDispatch`: holds the works that wait and runs one whenever it is given a turn.
//
// Made by: `AsioDispatch`. The turns come from a `QueueRunner`: the main thread or a pool.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>

#include "Platform/Dispatch.h"

namespace lanternfold {

class TimerSchedule;
class WorkQueue;

/// Gives turns to queues.
class QueueRunner {
 public:
  virtual ~QueueRunner() = default;
  /// Calls `queue.takeTurn()` soon on one of the runner's threads, and again as long as it asks for
  /// another. Any thread; never blocks.
  virtual void schedule(WorkQueue& queue) = 0;
};

/// All operations from any thread.
class WorkQueue final : public DispatchQueue {
 public:
  enum class Mode { serial, concurrent };

  WorkQueue(std::string label, Mode mode, QueueRunner& runner, TimerSchedule& timers)
      : label_(std::move(label)), mode_(mode), runner_(runner), timers_(timers) {}

  void async(Work work) override;
  void after(std::chrono::nanoseconds delay, Work work) override;
  [[nodiscard]] bool isCurrent() const override;
  [[nodiscard]] std::string_view label() const override { return label_; }

  /// Runs the oldest waiting work. Returns whether the queue needs another turn from this runner.
  [[nodiscard]] bool takeTurn();

  /// Destroys the works that wait, on the calling thread, and from then on every further one.
  void close();

 private:
  const std::string label_;
  const Mode mode_;
  QueueRunner& runner_;
  TimerSchedule& timers_;

  std::mutex mutex_;
  std::deque<Work> works_;    // guarded by mutex_
  bool turnPending_ = false;  // guarded by mutex_; serial queues have one turn at a time
  bool closed_ = false;       // guarded by mutex_
};

}  // namespace lanternfold
