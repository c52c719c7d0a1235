// One moment on a queue, which can be called off. For moments that come again and again see
// `RepeatingTimer`.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "Platform/Dispatch.h"

namespace lanternfold {

/// The handle; destroying it calls the moment off, of which the queue then keeps an empty work
/// until it would have been due. Any thread; the handle itself is its holder's to
/// guard.
class Timer {
 public:
  using Fire = std::move_only_function<void()>;

  /// Runs `fire` on `queue` once `delay` has passed; never inside this call. `queue` outlives the
  /// timer.
  Timer(DispatchQueue& queue, std::chrono::nanoseconds delay, Fire fire)
      : pending_(std::make_shared<Pending>(std::move(fire))) {
    queue.after(delay, [weak = std::weak_ptr(pending_)] {
      if (const auto pending = weak.lock()) pending->take()();
    });
  }
  ~Timer() { invalidate(); }
  Timer(Timer&&) = default;
  Timer& operator=(Timer&&) = delete;

  /// It does not fire after the return, unless it fires already.
  void invalidate() {
    if (const auto pending = std::exchange(pending_, nullptr)) (void)pending->take();
  }

 private:
  class Pending {
   public:
    explicit Pending(Fire fire) : fire_(std::move(fire)) {}
    /// Does nothing from the second call on.
    [[nodiscard]] Fire take() {
      const std::lock_guard lock(mutex_);
      return std::exchange(fire_, [] {});
    }

   private:
    std::mutex mutex_;
    Fire fire_;  // guarded by mutex_
  };

  std::shared_ptr<Pending> pending_;
};

}  // namespace lanternfold
