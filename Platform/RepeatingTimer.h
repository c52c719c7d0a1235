// A schedule of ticks on a queue, without drift.
//
// Made by: whoever does something again and again, such as the recorder of the counters. Another
// period is another timer.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Support/FatalError.h"

namespace lanternfold {

/// The handle of one schedule; destroying it, or assigning to it, cancels the schedule. Tick n is
/// due at the start plus n periods: the first at once, and never inside the call that starts it. A
/// tick that comes late (a busy queue, a machine that slept) does not move those after it; of
/// several that are due by then only one is run. Any thread may start one or cancel it; the handle
/// itself is its holder's to guard.
class RepeatingTimer {
 public:
  using Tick = std::move_only_function<void()>;

  /// `queue` and `clock` outlive the timer, and `clock` is the one that the queue's delays follow.
  /// Stops the program when `period` is not above zero.
  RepeatingTimer(DispatchQueue& queue, const Clock& clock, std::chrono::nanoseconds period,
                 Tick tick)
      : schedule_(std::make_shared<Schedule>(queue, clock, period, std::move(tick))) {
    if (period <= std::chrono::nanoseconds::zero()) {
      fatalError("a repeating timer was started with a period that is not above zero");
    }
    queue.async([weak = std::weak_ptr(schedule_)] { run(weak); });
  }
  ~RepeatingTimer() { cancel(); }
  RepeatingTimer(RepeatingTimer&&) = default;
  RepeatingTimer& operator=(RepeatingTimer&& other) noexcept {
    if (this != &other) {
      cancel();
      schedule_ = std::move(other.schedule_);
    }
    return *this;
  }

  /// No tick begins after the return; one that has begun on another thread may still be running,
  /// and there is none such when the call is made on the queue. What the tick holds is released at
  /// the return, or by the queue after the tick that is running.
  void cancel() {
    if (const auto schedule = std::exchange(schedule_, nullptr)) schedule->cancel();
  }

 private:
  class Schedule {
   public:
    using TimePoint = std::chrono::steady_clock::time_point;

    Schedule(DispatchQueue& queue, const Clock& clock, std::chrono::nanoseconds period, Tick tick)
        : queue_(queue),
          clock_(clock),
          period_(period),
          start_(clock.steadyNow()),
          tick_(std::move(tick)) {}

    void cancel() { cancelled_ = true; }

    /// Runs the tick that is due; returns whether there is a next one.
    [[nodiscard]] bool tick() {
      if (cancelled_) return false;
      const TimePoint began = clock_.steadyNow();
      const auto untilNext = period_ - (began - start_) % period_;
      nextDue_ = began + std::min<TimePoint::duration>(untilNext, TimePoint::max() - began);
      tick_();
      return !cancelled_;
    }

    void scheduleNext(DispatchQueue::Work work) {
      queue_.after(nextDue_ - clock_.steadyNow(), std::move(work));
    }

   private:
    DispatchQueue& queue_;
    const Clock& clock_;
    const std::chrono::nanoseconds period_;
    const TimePoint start_;
    TimePoint nextDue_;  // of the queue's works alone
    Tick tick_;
    std::atomic<bool> cancelled_ = false;
  };

  /// What the queue holds is weak: a schedule whose handle is gone leaves an empty work behind.
  static void run(const std::weak_ptr<Schedule>& weak) {
    const auto schedule = weak.lock();
    if (schedule == nullptr || !schedule->tick()) return;
    schedule->scheduleNext([weak] { run(weak); });
  }

  std::shared_ptr<Schedule> schedule_;
};

}  // namespace lanternfold
