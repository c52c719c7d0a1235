// Keeps one idle dump socket for the next user: opening and closing one takes as long as dumping
// a few links.
//
// Made by: `LinuxNetworkKernel`. Read by: its readings.
#pragma once

#include <expected>
#include <mutex>
#include <optional>

#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// Any thread.
class NetlinkSocketPool {
 public:
  /// The idle socket, or a new one. Errors: those of opening.
  [[nodiscard]] std::expected<NetlinkSocket, NetworkKernelError> take();

  /// Keeps `socket` for the next user; a second idle one is closed.
  void giveBack(NetlinkSocket socket);

 private:
  std::mutex mutex_;  // guards idle_
  std::optional<NetlinkSocket> idle_;
};

}  // namespace lanternfold
