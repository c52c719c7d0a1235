// The thread that a message bus is spoken with: a GLib main loop of its own.
//
// Made by: `BusLocationPortal`. Internal to this room: it brings in GLib.
#pragma once

#include <chrono>
#include <functional>
#include <glib.h>
#include <memory>
#include <thread>

namespace lanternfold {

struct MainContextCloser {
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
struct MainLoopCloser {
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};
/// What waits with it is not run.
struct SourceCloser {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
using BusTimer = std::unique_ptr<GSource, SourceCloser>;

/// Runs from construction to destruction, which is not to be on the thread itself.
class BusThread {
 public:
  using Work = std::move_only_function<void()>;

  BusThread();
  /// What still waits is destroyed without being run.
  ~BusThread();
  BusThread(const BusThread&) = delete;
  BusThread& operator=(const BusThread&) = delete;

  /// Runs `work` on the thread, after what was posted before. Any thread; never blocks.
  void post(Work work);
  /// The same, and returns when it is done.
  void runAndWait(Work work);
  /// Runs `work` on the thread, unless the timer is destroyed before. On the thread only.
  [[nodiscard]] BusTimer after(std::chrono::milliseconds delay, Work work);
  /// Runs what is due, until nothing is. On the thread only.
  void finishWhatIsDue();
  /// Waits for the next thing and runs it. On the thread only.
  void waitForNext();

  [[nodiscard]] bool isCurrent() const { return std::this_thread::get_id() == thread_.get_id(); }

 private:
  const std::unique_ptr<GMainContext, MainContextCloser> context_;
  const std::unique_ptr<GMainLoop, MainLoopCloser> loop_;
  std::thread thread_;
};

}  // namespace lanternfold
