// The part of a path monitor that lives on the event loop, from `start` until it is cancelled.
//
// Made by: `LinuxPathMonitor`. Kept alive by it and by what waits on the loop.
#pragma once

#include <memory>
#include <optional>

#include "Platform/Dispatch.h"
#include "PlatformLinux/Path/NetworkSnapshot.h"
#include "PlatformLinux/Path/UpdatePace.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/NetlinkEventSocket.h"
#include "PlatformLinux/System/NetworkSnapshotReader.h"
#include "PlatformLinux/System/WifiEventSocket.h"

namespace lanternfold {

/// Every operation but the constructor runs on the loop's thread.
///
/// A report of the kernel only says that something changed; what is so now is read from the tables
/// when an update is due. Nothing can be missed: the listening begins before the first look, and
/// lost reports count as a change.
class PathMonitorSession : public std::enable_shared_from_this<PathMonitorSession> {
 public:
  /// What the session reads; opened on the thread whose network namespace is meant.
  struct Sources {
    /// None when the kernel or a sandbox refuses.
    std::optional<NetlinkEventSocket> events;
    /// None as well when the monitor is of another type than Wi-Fi.
    std::optional<WifiEventSocket> wifiEvents;
    std::optional<NetworkSnapshotReader> tables;
    std::optional<PathInterfaceType> requiredType;

    [[nodiscard]] static Sources open(const LinkSurvey& survey,
                                      std::optional<PathInterfaceType> requiredType);
  };

  PathMonitorSession(EventLoop& loop, DispatchQueue& queue,
                     std::weak_ptr<PathUpdateRecipient> recipient, Sources sources);
  ~PathMonitorSession();
  PathMonitorSession(const PathMonitorSession&) = delete;
  PathMonitorSession& operator=(const PathMonitorSession&) = delete;

  /// Reports the path as it is, and goes on reporting if the kernel can be listened to.
  void begin();
  /// Closes everything; the second call does nothing.
  void end();

 private:
  struct Waits;  ///< what hangs on the loop

  void waitForEvents();
  void takeEvents();
  void waitForWifiEvents();
  void takeWifiEvents();
  void noteChange();
  void report();
  [[nodiscard]] bool look();
  void tryAgain();

  EventLoop& loop_;
  DispatchQueue& queue_;
  std::weak_ptr<PathUpdateRecipient> recipient_;
  Sources sources_;
  std::unique_ptr<Waits> waits_;
  UpdatePace pace_;
  /// The last look that succeeded.
  NetworkSnapshot known_;
  bool isFirstReport_ = true;
  int failedLooks_ = 0;
};

}  // namespace lanternfold
