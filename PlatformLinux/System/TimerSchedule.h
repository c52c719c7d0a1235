// The delayed works of `AsioDispatch`, handed to their queues when they are due.
//
// One asio timer on the event loop stands for all of them: works that are due at the same moment
// are handed over in the order in which they were added, which asio alone does not promise.
#pragma once

#include <chrono>
#include <memory>

#include "Platform/Dispatch.h"

namespace lanternfold {

class EventLoop;

/// All operations from any thread.
class TimerSchedule {
 public:
  explicit TimerSchedule(EventLoop& loop);
  ~TimerSchedule();
  TimerSchedule(const TimerSchedule&) = delete;
  TimerSchedule& operator=(const TimerSchedule&) = delete;

  /// Appends `work` to `queue` when `delay` has passed.
  void add(std::chrono::nanoseconds delay, DispatchQueue& queue, DispatchQueue::Work work);

  /// Destroys the works that wait, on the calling thread, and from then on every further one. No
  /// queue is touched after the return.
  void close();

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace lanternfold
