#include "PlatformLinux/System/WifiEventSocket.h"

#include <algorithm>
#include <utility>

namespace lanternfold {

std::expected<WifiEventSocket, NetworkKernelError> WifiEventSocket::open(
    std::vector<std::string> groups) {
  auto socket = GenericEventSocket::open(wifiFamilyName, std::move(groups));
  if (!socket) return std::unexpected(socket.error());
  return WifiEventSocket(*std::move(socket));
}

std::expected<WifiEventSocket::Drained, NetworkKernelError> WifiEventSocket::drain() {
  Drained drained;
  const auto outcome = socket_.drain([&](const NetlinkMessage& message) {
    drained.news = std::max(drained.news, newsOfWifiEvent(message));
  });
  if (!outcome) return std::unexpected(outcome.error());
  if (*outcome == NetlinkEventOutcome::overflowed) drained.news = WifiNews::state;
  drained.isEmpty = *outcome == NetlinkEventOutcome::drained;
  return drained;
}

}  // namespace lanternfold
