// The production side of `Dispatch`: the main queue run by the main thread or by a loop that the
// program has there already, serial and global queues on pools of threads, delays on the event
// loop.
//
// Made by: the composition of each program, one per program.
#pragma once

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "Platform/Dispatch.h"
#include "PlatformLinux/System/TimerSchedule.h"
#include "PlatformLinux/System/WorkQueue.h"
#include "PlatformLinux/System/WorkerPool.h"

namespace lanternfold {

class EventLoop;
class MainThreadRunner;

/// No thread is started before work is appended. Ordinary qualities of service share one pool;
/// background work has its own, of threads with a lower priority.
class AsioDispatch final : public Dispatch {
 public:
  /// `loop` outlives the dispatch. The main queue is run by `runMain`.
  explicit AsioDispatch(EventLoop& loop);
  /// The main queue gets its turns from `mainRunner`, on the main thread; `runMain` and
  /// `runMainUntil` are not to be called then.
  AsioDispatch(EventLoop& loop, std::unique_ptr<QueueRunner> mainRunner);
  /// Lets go whoever waits in a `sync` whose work has not begun, waits for the works that are
  /// running, then destroys those that wait, on the calling thread.
  /// Works and handlers that are being destroyed may still append: that work is destroyed too; so
  /// may a handler of the loop that is running, which is waited for. Not to be called by a work or
  /// on the loop.
  ~AsioDispatch() override;

  [[nodiscard]] DispatchQueue& mainQueue() override;
  [[nodiscard]] DispatchQueue& serialQueue(std::string_view label,
                                           QualityOfService quality) override;
  [[nodiscard]] DispatchQueue& globalQueue(QualityOfService quality) override;

  /// Runs the main queue on the calling thread until `stopMain`. One call at a time, and not from
  /// a work of the main queue.
  void runMain();

  /// The same, but no longer than to `deadline` (a work that is running then is finished). Returns
  /// whether `stopMain` ended it.
  [[nodiscard]] bool runMainUntil(std::chrono::steady_clock::time_point deadline);

  /// Ends the current call of `runMain` after the work that it is running, or else the next call
  /// at once. What waits on the main queue stays there. Any thread.
  void stopMain();

 private:
  [[nodiscard]] MainThreadRunner& ownRunner() const;
  [[nodiscard]] WorkerPool& poolFor(QualityOfService quality);
  void refuseWaits();

  EventLoop& loop_;
  TimerSchedule timers_;
  WorkerPool ordinaryPool_{WorkerPool::Priority::ordinary};
  WorkerPool backgroundPool_{WorkerPool::Priority::background};
  const std::unique_ptr<QueueRunner> mainRunner_;
  WorkQueue mainQueue_;
  std::array<std::unique_ptr<WorkQueue>, 4> globalQueues_;

  std::mutex mutex_;
  // Guarded by mutex_; queues are never removed, so references stay good.
  std::map<std::string, std::unique_ptr<WorkQueue>, std::less<>> serialQueues_;
  bool waitsRefused_ = false;  // guarded by mutex_
};

}  // namespace lanternfold
