// The handle of one subscription to a publisher.
//
// Made by: `Publisher::subscribe`. Held by: the subscriber, for as long as it wants to be called.
#pragma once

#include <functional>
#include <utility>

namespace lanternfold {

/// Destroying it, or assigning to it, cancels the subscription. May outlive the publisher. Any
/// thread may cancel; the handle itself is its holder's to guard.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::move_only_function<void()> cancel) : cancel_(std::move(cancel)) {}
  ~Subscription() { cancel(); }
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      cancel();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }

  /// The handler is not called again after the return; a call that has begun on another thread may
  /// still be running. Nothing happens the second time.
  void cancel() {
    if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

 private:
  std::move_only_function<void()> cancel_;
};

}  // namespace lanternfold
