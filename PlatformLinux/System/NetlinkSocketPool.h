// Keeps one idle dump socket for the next user: opening and closing one takes as long as dumping
// a few links.
//
// Made by: `LinuxNetworkKernel`. Read by: its readings.
#pragma once

#include <expected>
#include <mutex>
#include <optional>
#include <utility>

#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// Any thread.
class NetlinkSocketPool {
 public:
  /// Sockets for rtnetlink.
  NetlinkSocketPool();
  explicit NetlinkSocketPool(NetlinkChannelOpener opener) : opener_(std::move(opener)) {}

  /// The idle socket, or a new one. Errors: those of opening.
  [[nodiscard]] std::expected<NetlinkSocket, NetworkKernelError> take();

  /// Keeps `socket` for the next user; a second idle one is closed.
  void giveBack(NetlinkSocket socket);

 private:
  NetlinkChannelOpener opener_;
  std::mutex mutex_;  // guards idle_
  std::optional<NetlinkSocket> idle_;
};

}  // namespace lanternfold
