// Waits on the event loop for a program's end.
//
// Made by: `SocketChildProgramLauncher`, one for each program that it starts.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>

#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

#include "Platform/ChildProgram.h"
#include "Platform/Dispatch.h"
#include "PlatformLinux/System/SpawnedProcess.h"

namespace lanternfold {

class EventLoop;

/// How many programs have not ended yet. Any thread.
class RunningPrograms {
 public:
  void begin();
  void end();
  /// Whether all of them have ended, at the latest when `patience` has passed.
  bool waitUntilAllEnded(std::chrono::milliseconds patience);

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t count_ = 0;  // guarded by mutex_
};

/// Lives until its process has been reaped, whoever holds it. Of the main queue where nothing else
/// is said.
class ProgramSupervision : public std::enable_shared_from_this<ProgramSupervision> {
 public:
  /// What is left to a program that nobody holds any more.
  static constexpr std::chrono::seconds farewell{2};

  ProgramSupervision(SpawnedProcess process, EventLoop& loop, DispatchQueue& mainQueue,
                     std::shared_ptr<RunningPrograms> running);
  ~ProgramSupervision();
  ProgramSupervision(const ProgramSupervision&) = delete;
  ProgramSupervision& operator=(const ProgramSupervision&) = delete;

  /// Once, before `start`. The error is the system's, which watches a limited number; the process
  /// has been ended and reaped then.
  [[nodiscard]] std::error_code watch();
  /// Once. `ended` is called on the main queue, once, unless the program has been let go.
  void start(std::function<void(ChildEnd)> ended);
  void kill() const { process_.kill(); }
  /// Nobody waits for its end any more: it is killed when it is still there after the farewell.
  void letGo();

 private:
  // On the event loop.
  void wait();
  void reap();
  void limitFarewell();

  SpawnedProcess process_;
  EventLoop& loop_;
  DispatchQueue& mainQueue_;
  std::shared_ptr<RunningPrograms> running_;
  std::function<void(ChildEnd)> ended_;  // of the main queue
  // Of the event loop.
  asio::posix::stream_descriptor readable_;  ///< that of `process_`, which owns it
  asio::steady_timer farewellTimer_;
  bool isLetGo_ = false;
  bool hasEnded_ = false;
};

}  // namespace lanternfold
