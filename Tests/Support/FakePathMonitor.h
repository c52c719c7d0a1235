// Path monitors over one path that a test sets.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/PathMonitor.h"

namespace lanternfold {

/// The system as its path monitors see it: holds the current path and remembers every monitor that
/// was made, also those that are gone. One thread: that of a `SimulatedDispatch`, or a test that
/// waits for its queues.
class FakePathMonitorFactory final : public PathMonitorFactory {
 public:
  /// What became of one monitor.
  struct Record {
    std::optional<PathInterfaceType> requiredInterfaceType;
    PathMonitor::UpdateHandler handler;
    DispatchQueue* startedOn = nullptr;  ///< null before `start`
    bool cancelled = false;
    bool destroyed = false;
    int updates = 0;  ///< delivered so far

    [[nodiscard]] bool listens() const { return startedOn != nullptr && !cancelled && !destroyed; }
  };

  /// The path that monitors report soon after their start.
  explicit FakePathMonitorFactory(NetworkPath path = {}) : path_(std::move(path)) {}

  [[nodiscard]] std::unique_ptr<PathMonitor> makePathMonitor(
      std::optional<PathInterfaceType> requiredInterfaceType) override;

  /// Changes the path: every monitor that listens reports it on its queue.
  void deliver(NetworkPath path);

  /// From now on the system cannot be listened to: a monitor reports once, after its start.
  void stopTelling() { tells_ = false; }

  /// Every monitor ever made, in order.
  [[nodiscard]] const std::vector<std::shared_ptr<Record>>& monitors() const { return monitors_; }

 private:
  NetworkPath path_;
  bool tells_ = true;
  std::vector<std::shared_ptr<Record>> monitors_;
};

}  // namespace lanternfold
