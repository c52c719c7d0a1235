// The main loop of a Linux program: the main queue, and the signals that ask it to end.
#pragma once

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Wiring/Machine.h"

namespace lanternfold {

class LinuxMainLoop final : public MainLoop {
 public:
  /// Both outlive the loop.
  LinuxMainLoop(EventLoop& eventLoop, AsioDispatch& dispatch);

  /// What `EndRequests` catches ends the run.
  void runUntilInterrupted() override;
  void runFor(std::chrono::milliseconds limit) override;
  void stop() override;

 private:
  EventLoop& eventLoop_;
  AsioDispatch& dispatch_;
};

}  // namespace lanternfold
