// The seam to the operating system's reports of network path changes.
//
// Linux side: `LinuxPathMonitor` (groups of rtnetlink and nl80211). Fake: `FakePathMonitor`.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "Platform/Dispatch.h"
#include "Platform/NetworkPath.h"

namespace lanternfold {

/// Reports the current path soon after `start`, and again after every change of a link, an address
/// or a default route, and, unless it is a monitor of another type, after every change of the
/// Wi-Fi: a network joined, left or changed for another cell of it, another channel, interface or
/// country. The path need not differ from the last one. A burst of changes is reported at once and
/// then at most ten times a second, the last state always. All updates run on the queue given to
/// `start`; none runs after `cancel` returned on that queue or after the monitor was destroyed
/// there. A handler may cancel or destroy the monitor that is calling it.
class PathMonitor {
 public:
  using UpdateHandler = std::function<void(const NetworkPath&)>;

  virtual ~PathMonitor() = default;

  /// To be called before `start`.
  virtual void setPathUpdateHandler(UpdateHandler handler) = 0;

  /// Once per monitor. A system that cannot be listened to gets one update and no more.
  virtual void start(DispatchQueue& queue) = 0;

  /// Ends the updates for good; a second call does nothing.
  virtual void cancel() = 0;
};

/// Makes monitors; any thread.
class PathMonitorFactory {
 public:
  virtual ~PathMonitorFactory() = default;

  /// A monitor of all interfaces, or, with a type, of the paths over interfaces of that type only.
  [[nodiscard]] virtual std::unique_ptr<PathMonitor> makePathMonitor(
      std::optional<PathInterfaceType> requiredInterfaceType) = 0;
};

}  // namespace lanternfold
