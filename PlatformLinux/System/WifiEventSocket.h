// Listens to nl80211's reports and says what they come to.
//
// Made by: the path monitor and the Wi-Fi client.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "PlatformLinux/System/GenericEventSocket.h"
#include "PlatformLinux/Wifi/WifiEvents.h"

namespace lanternfold {

/// Threads: one at a time.
class WifiEventSocket {
 public:
  /// In the network namespace of the calling thread; on a kernel without nl80211 it waits for it.
  /// Errors: refused, failed.
  [[nodiscard]] static std::expected<WifiEventSocket, NetworkKernelError> open(
      std::vector<std::string> groups);

  [[nodiscard]] int descriptor() const { return socket_.descriptor(); }

  struct Drained {
    /// The most of all reports that have arrived; `state` also when some were lost.
    WifiNews news = WifiNews::none;
    bool isEmpty = true;  ///< whether nothing is left for another call
  };
  /// Error: failed, after which the socket is of no more use.
  [[nodiscard]] std::expected<Drained, NetworkKernelError> drain();

 private:
  explicit WifiEventSocket(GenericEventSocket socket) : socket_(std::move(socket)) {}

  GenericEventSocket socket_;
};

}  // namespace lanternfold
