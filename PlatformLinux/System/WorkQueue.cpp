#include "PlatformLinux/System/WorkQueue.h"

#include <utility>

#include "PlatformLinux/System/TimerSchedule.h"

namespace lanternfold {
namespace {

/// The queue whose work runs on this thread; null outside of works.
thread_local const WorkQueue* currentQueue = nullptr;

}  // namespace

void WorkQueue::async(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return;
    works_.push_back(std::move(work));
    if (mode_ == Mode::serial && std::exchange(turnPending_, true)) return;
  }
  runner_.schedule(*this);
}

void WorkQueue::after(std::chrono::nanoseconds delay, Work work) {
  if (delay <= std::chrono::nanoseconds::zero()) {
    async(std::move(work));
  } else {
    timers_.add(delay, *this, std::move(work));
  }
}

bool WorkQueue::isCurrent() const { return currentQueue == this; }

bool WorkQueue::takeTurn() {
  Work work;
  {
    const std::lock_guard lock(mutex_);
    if (works_.empty()) return false;
    work = std::move(works_.front());
    works_.pop_front();
  }
  currentQueue = this;
  work();
  // What the work holds is released as part of it, before the next work begins.
  work = nullptr;
  currentQueue = nullptr;

  const std::lock_guard lock(mutex_);
  if (mode_ == Mode::serial) turnPending_ = !works_.empty();
  return mode_ == Mode::serial && turnPending_;
}

void WorkQueue::close() {
  std::deque<Work> waiting;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    waiting.swap(works_);
  }
}

}  // namespace lanternfold
