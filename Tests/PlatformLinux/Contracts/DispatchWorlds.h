// The sides of the dispatch seam, each with its way of letting works run, for the contract
// tests.
#pragma once

#include <chrono>
#include <functional>
#include <glib.h>
#include <memory>

#include "Platform/Clock.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/GlibMainRunner.h"
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

/// The same with GLib's default main context as the main loop, as in a program with windows.
class GlibWorld {
 public:
  [[nodiscard]] Dispatch& dispatch() { return *dispatch_; }
  [[nodiscard]] const Clock& clock() const { return clock_; }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = clock_.steadyNow() + std::chrono::seconds(30);
    // Works of other queues change what `done` says without waking the context.
    const guint look =
        g_timeout_add(2, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!done() && clock_.steadyNow() <= limit) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(look);
    return done();
  }

  void destroyDispatch() { dispatch_.reset(); }

 private:
  SystemClock clock_;
  EventLoop loop_;
  std::unique_ptr<AsioDispatch> dispatch_ =
      std::make_unique<AsioDispatch>(loop_, std::make_unique<GlibMainRunner>());
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
