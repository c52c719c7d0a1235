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

class QueueWait;
class TimerSchedule;
class WorkQueue;

/// Gives turns to queues.
class QueueRunner {
 public:
  virtual ~QueueRunner() = default;
  /// Calls `queue.takeTurn()` soon on one of the runner's threads, and again as long as it asks for
  /// another. Any thread; never blocks.
  virtual void schedule(WorkQueue& queue) = 0;

  /// A work that has its turn from this runner begins to wait for another queue, and ends to.
  virtual void workBeginsToWait() {}
  virtual void workEndsToWait() {}
};

/// All operations from any thread.
class WorkQueue final : public DispatchQueue {
 public:
  enum class Mode { serial, concurrent };

  WorkQueue(std::string label, Mode mode, QueueRunner& runner, TimerSchedule& timers)
      : label_(std::move(label)), mode_(mode), runner_(runner), timers_(timers) {}

  void async(Work work) override;
  void after(std::chrono::nanoseconds delay, Work work) override;
  bool sync(Work work) override;
  [[nodiscard]] bool isCurrent() const override;
  [[nodiscard]] std::string_view label() const override { return label_; }

  /// Runs the oldest waiting work. Returns whether the queue needs another turn from this runner.
  [[nodiscard]] bool takeTurn();

  /// Ends every wait of a `sync` whose work has not begun, and from now on each at once.
  void refuseWaits();

  /// Destroys the works that wait, on the calling thread, and from then on every further one.
  void close();

 private:
  /// A work that runs, and the one that waits for it to end.
  struct Frame {
    const WorkQueue* queue;
    const Frame* waiter;
  };
  struct Entry {
    Work work;
    bool awaited = false;           // by a `sync`
    const Frame* waiter = nullptr;  // of an awaited work, when the caller is itself a work
  };

  void append(Entry entry);
  void refuseCircularWait() const;
  [[nodiscard]] static bool waitFor(QueueWait& wait);

  /// Of the calling thread; null outside of works.
  static thread_local const Frame* currentFrame;

  const std::string label_;
  const Mode mode_;
  QueueRunner& runner_;
  TimerSchedule& timers_;

  std::mutex mutex_;
  std::deque<Entry> works_;    // guarded by mutex_
  bool turnPending_ = false;   // guarded by mutex_; serial queues have one turn at a time
  bool waitsRefused_ = false;  // guarded by mutex_
  bool closed_ = false;        // guarded by mutex_
};

}  // namespace lanternfold
