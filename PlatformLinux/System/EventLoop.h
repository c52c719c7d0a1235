// The one background thread that waits for descriptors and timers.
//
// Made by: the composition, one per program. Used by: the Linux sides that listen to the system
// (path monitor, dispatch delays); each hangs its asio objects on `context()`.
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <thread>

namespace asio {
class io_context;
}

namespace lanternfold {

/// Runs from construction to destruction. Everything that hangs on the loop must have been closed
/// before the loop is destroyed. Handlers must be short: a slow one delays all the others.
class EventLoop {
 public:
  using Work = std::move_only_function<void()>;

  /// The thread is called `threadName`, cut to the 15 bytes that the kernel keeps.
  explicit EventLoop(std::string_view threadName = "event-loop");
  /// Ends the thread after the handler that is running. What still waits is destroyed without being
  /// run, on the calling thread, which must not be the loop's.
  ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  /// For asio objects: descriptors, timers. Any thread may make them; include <asio/io_context.hpp>
  /// where it is used.
  [[nodiscard]] asio::io_context& context() { return *context_; }

  /// Runs `work` on the loop's thread soon, in the order of the calls. Any thread; never blocks.
  void post(Work work);

  /// Runs `work` on the loop's thread and returns when it is done; at once when called there. For
  /// closing what hangs on the loop, so that no handler of it runs afterwards.
  void runAndWait(Work work);

  /// Whether the calling code runs on the loop's thread.
  [[nodiscard]] bool isCurrent() const;

 private:
  std::unique_ptr<asio::io_context> context_;
  std::thread thread_;
};

}  // namespace lanternfold
