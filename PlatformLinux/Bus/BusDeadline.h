// An end to waiting for a bus that takes a connection and says nothing on it, for which the library
// has no limit of its own.
//
// Made by: whoever blocks on a bus.
#pragma once

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <thread>

namespace lanternfold {

/// Cancels what waits with its `cancellable` when its time is over, unless it is destroyed before.
class BusDeadline {
 public:
  explicit BusDeadline(std::chrono::milliseconds limit);
  BusDeadline(const BusDeadline&) = delete;
  BusDeadline& operator=(const BusDeadline&) = delete;

  /// Lives as long as this. Any thread.
  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

  /// Whether the time was over.
  [[nodiscard]] bool isOver() const {
    return g_cancellable_is_cancelled(cancellable_.get()) != FALSE;
  }

 private:
  struct Release {
    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
  };

  const std::unique_ptr<GCancellable, Release> cancellable_;
  std::mutex mutex_;
  std::condition_variable_any condition_;
  std::jthread thread_;
};

}  // namespace lanternfold
