// The two sides of the dispatch seam, each with its way of letting works run, for the contract
// tests.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "Platform/Clock.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/SystemClock.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

/// Real threads and real time; the test's thread is the main thread while it waits.
class AsioWorld {
 public:
  [[nodiscard]] Dispatch& dispatch() { return *dispatch_; }
  [[nodiscard]] const Clock& clock() const { return clock_; }

  /// Lets works run until `done`, which may be called while they do. False when it takes longer
  /// than any machine should need.
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = clock_.steadyNow() + std::chrono::seconds(30);
    while (!done()) {
      if (clock_.steadyNow() > limit) return false;
      static_cast<void>(dispatch_->runMainUntil(clock_.steadyNow() + std::chrono::milliseconds(2)));
    }
    return true;
  }

  void destroyDispatch() { dispatch_.reset(); }

 private:
  SystemClock clock_;
  EventLoop loop_;
  std::unique_ptr<AsioDispatch> dispatch_ = std::make_unique<AsioDispatch>(loop_);
};

/// One thread and virtual time.
class SimulatedWorld {
 public:
  [[nodiscard]] Dispatch& dispatch() { return *dispatch_; }
  [[nodiscard]] const Clock& clock() const { return clock_; }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return dispatch_->runUntil(done, std::chrono::seconds(30));
  }

  void destroyDispatch() { dispatch_.reset(); }

 private:
  SimulatedClock clock_;
  std::unique_ptr<SimulatedDispatch> dispatch_ = std::make_unique<SimulatedDispatch>(clock_);
};

}  // namespace lanternfold
