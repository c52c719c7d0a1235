#include "PlatformLinux/System/WorkQueue.h"

#include <memory>
#include <utility>

#include "PlatformLinux/System/QueueWait.h"
#include "PlatformLinux/System/TimerSchedule.h"

namespace lanternfold {
namespace {

/// The work of a `sync`: releases what it holds before it lets the caller go, run or not.
struct AwaitedWork {
  QueueWait::End end;  // destroyed after `work`
  DispatchQueue::Work work;

  void operator()() {
    work();
    work = nullptr;
    end.finish();
  }
};

}  // namespace

thread_local const WorkQueue::Frame* WorkQueue::currentFrame = nullptr;

void WorkQueue::async(Work work) { append({.work = std::move(work)}); }

void WorkQueue::after(std::chrono::nanoseconds delay, Work work) {
  if (delay <= std::chrono::nanoseconds::zero()) {
    async(std::move(work));
  } else {
    timers_.add(delay, *this, std::move(work));
  }
}

bool WorkQueue::sync(Work work) {
  refuseCircularWait();
  const auto wait = std::make_shared<QueueWait>();
  append({.work = AwaitedWork{.end = QueueWait::End(wait), .work = std::move(work)},
          .awaited = true,
          .waiter = currentFrame});
  return waitFor(*wait);
}

bool WorkQueue::isCurrent() const { return currentFrame != nullptr && currentFrame->queue == this; }

bool WorkQueue::takeTurn() {
  Entry entry;
  {
    const std::lock_guard lock(mutex_);
    if (works_.empty()) {
      turnPending_ = false;
      return false;
    }
    entry = std::move(works_.front());
    works_.pop_front();
  }
  const Frame frame{.queue = this, .waiter = entry.waiter};
  currentFrame = &frame;
  entry.work();
  // What the work holds is released as part of it, before the next work begins.
  entry.work = nullptr;
  currentFrame = nullptr;

  const std::lock_guard lock(mutex_);
  if (mode_ == Mode::serial) turnPending_ = !works_.empty();
  return mode_ == Mode::serial && turnPending_;
}

void WorkQueue::refuseWaits() {
  std::deque<Entry> refused;
  {
    const std::lock_guard lock(mutex_);
    waitsRefused_ = true;
    std::deque<Entry> kept;
    for (Entry& entry : works_) (entry.awaited ? refused : kept).push_back(std::move(entry));
    works_.swap(kept);
  }
}

void WorkQueue::close() {
  std::deque<Entry> waiting;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    waiting.swap(works_);
  }
}

void WorkQueue::append(Entry entry) {
  {
    const std::lock_guard lock(mutex_);
    if (closed_ || (entry.awaited && waitsRefused_)) return;
    works_.push_back(std::move(entry));
    if (mode_ == Mode::serial && std::exchange(turnPending_, true)) return;
  }
  runner_.schedule(*this);
}

void WorkQueue::refuseCircularWait() const {
  if (mode_ == Mode::concurrent) return;
  for (const Frame* frame = currentFrame; frame != nullptr; frame = frame->waiter) {
    if (frame->queue == this) stopForCircularWait(*this);
  }
}

bool WorkQueue::waitFor(QueueWait& wait) {
  if (currentFrame == nullptr) return wait.wait();
  QueueRunner& runner = currentFrame->queue->runner_;
  runner.workBeginsToWait();
  const bool finished = wait.wait();
  runner.workEndsToWait();
  return finished;
}

}  // namespace lanternfold
