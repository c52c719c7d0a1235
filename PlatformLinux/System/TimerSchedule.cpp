#include "PlatformLinux/System/TimerSchedule.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

using TimePoint = std::chrono::steady_clock::time_point;

/// Held by the schedule; the timer's handler on the loop holds it weakly.
struct TimerSchedule::State : std::enable_shared_from_this<State> {
  struct Delayed {
    DispatchQueue* queue;
    DispatchQueue::Work work;
  };

  explicit State(asio::io_context& context) : timer(context) {}

  void arm();
  void handOverDue();

  std::mutex mutex;
  asio::steady_timer timer;                 // guarded by mutex, as are all below
  std::multimap<TimePoint, Delayed> works;  // equal keys stay in the order of insertion
  bool closed = false;
};

void TimerSchedule::State::arm() {
  if (works.empty()) return;
  timer.expires_at(works.begin()->first);
  timer.async_wait([weak = weak_from_this()](const std::error_code& error) {
    if (error) return;
    if (const auto state = weak.lock()) state->handOverDue();
  });
}

void TimerSchedule::State::handOverDue() {
  // The queues are called under the lock, so that none is touched once `close` has returned.
  const std::lock_guard lock(mutex);
  if (closed) return;
  const TimePoint now = std::chrono::steady_clock::now();
  while (!works.empty() && works.begin()->first <= now) {
    const auto due = works.begin();
    due->second.queue->async(std::move(due->second.work));
    works.erase(due);
  }
  arm();
}

TimerSchedule::TimerSchedule(EventLoop& loop) : state_(std::make_shared<State>(loop.context())) {}

TimerSchedule::~TimerSchedule() { close(); }

void TimerSchedule::add(std::chrono::nanoseconds delay, DispatchQueue& queue,
                        DispatchQueue::Work work) {
  const TimePoint now = std::chrono::steady_clock::now();
  // A delay beyond the clock's range is due at its end.
  const TimePoint due = now + std::min<TimePoint::duration>(delay, TimePoint::max() - now);

  const std::lock_guard lock(state_->mutex);
  if (state_->closed) return;
  const auto added = state_->works.emplace(due, State::Delayed{&queue, std::move(work)});
  if (added == state_->works.begin()) state_->arm();
}

void TimerSchedule::close() {
  std::multimap<TimePoint, State::Delayed> waiting;
  {
    const std::lock_guard lock(state_->mutex);
    state_->closed = true;
    state_->timer.cancel();
    waiting.swap(state_->works);
  }
}

}  // namespace lanternfold
