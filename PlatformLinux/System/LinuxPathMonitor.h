// Reports of the network path from the kernel's own reports of changed links, addresses and routes,
// and of the Wi-Fi.
//
// Made by: `LinuxPathMonitorFactory`, which the composition makes. Read by: the network state
// monitor.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "Platform/PathMonitor.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinkSurvey.h"

namespace lanternfold {

class PathMonitorSession;

/// Whom the updates of one monitor go to. Used on the monitor's queue; only `isCancelled` is also
/// used elsewhere.
struct PathUpdateRecipient {
  PathMonitor::UpdateHandler handler;
  std::atomic<bool> isCancelled = false;
};

/// Listens on the event loop, without a thread of its own, and reports on the queue of `start`.
///
/// Threads: `start` on one thread, `cancel` and destruction on any; both are safe inside the
/// handler, which is destroyed with the monitor or at the end of its last call. The sockets belong
/// to the network namespace of the thread that calls `start`, and so must the event loop's thread.
class LinuxPathMonitor final : public PathMonitor {
 public:
  /// `loop` outlives the monitor.
  LinuxPathMonitor(EventLoop& loop, std::optional<PathInterfaceType> requiredInterfaceType,
                   LinkSurvey survey);
  ~LinuxPathMonitor() override;
  LinuxPathMonitor(const LinuxPathMonitor&) = delete;
  LinuxPathMonitor& operator=(const LinuxPathMonitor&) = delete;

  void setPathUpdateHandler(UpdateHandler handler) override;
  void start(DispatchQueue& queue) override;
  void cancel() override;

 private:
  EventLoop& loop_;
  std::optional<PathInterfaceType> requiredInterfaceType_;
  LinkSurvey survey_;
  std::shared_ptr<PathUpdateRecipient> recipient_;
  std::shared_ptr<PathMonitorSession> session_;
};

class LinuxPathMonitorFactory final : public PathMonitorFactory {
 public:
  /// `loop` outlives the factory and every monitor that it made.
  explicit LinuxPathMonitorFactory(EventLoop& loop, LinkSurvey survey = LinkSurvey());

  [[nodiscard]] std::unique_ptr<PathMonitor> makePathMonitor(
      std::optional<PathInterfaceType> requiredInterfaceType) override;

 private:
  EventLoop& loop_;
  LinkSurvey survey_;
};

}  // namespace lanternfold
