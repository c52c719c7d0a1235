// Gives the main queue its turns on GLib's default main context, beside whatever else a desktop's
// main loop does there.
//
// Made by: the composition of a program with windows, for its `AsioDispatch`.
#pragma once

#include <memory>

#include "PlatformLinux/System/WorkQueue.h"

namespace lanternfold {

/// One turn in each round of the context, and only when neither input waits nor anything to be
/// drawn: works that keep appending others hold no window up. Made and destroyed on the thread that
/// runs the context, and not by a work.
class GlibMainRunner final : public QueueRunner {
 public:
  GlibMainRunner();
  /// Turns that wait are not given any more.
  ~GlibMainRunner() override;
  GlibMainRunner(const GlibMainRunner&) = delete;
  GlibMainRunner& operator=(const GlibMainRunner&) = delete;

  void schedule(WorkQueue& queue) override;

 private:
  struct Turns;
  const std::unique_ptr<Turns> turns_;
};

}  // namespace lanternfold
