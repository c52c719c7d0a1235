// The links of a multi-link connection, which nl80211 nests as an array: each element's number is
// that of its link and one.
//
// Read by: the decoders of interfaces and stations.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <span>
#include <utility>
#include <vector>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/DecodeError.h"

namespace lanternfold {

/// The numbers of links are 0 to 14.
inline constexpr std::size_t mostWifiLinks = 15;

[[nodiscard]] consteval AttributeTable<mostWifiLinks> linkArrayTable() {
  std::array<AttributePolicy, mostWifiLinks> policies;
  for (std::size_t link = 0; link < mostWifiLinks; ++link) {
    policies[link] = nestedAttribute(static_cast<int>(link) + 1, "NL80211_ATTR_MLO_LINKS",
                                     AttributePresence::expendable);
  }
  return AttributeTable(policies);
}

/// What `decode` makes of each element, by ascending numbers. Left out are elements beyond the last
/// possible link and those of which it makes nothing; of an array that is no array everything is.
template <typename Link, typename Decode>
[[nodiscard]] std::vector<Link> decodeLinkArray(std::span<const std::uint8_t> bytes,
                                                Decode decode) {
  static constexpr AttributeTable table = linkArrayTable();
  const auto elements = table.parse(bytes);
  if (!elements) return {};
  std::vector<Link> links;
  for (std::uint16_t number = 1; number <= mostWifiLinks; ++number) {
    const auto element = elements->bytes(number);
    if (!element) continue;
    std::expected<Link, DecodeError> link = decode(*element);
    if (link) links.push_back(*std::move(link));
  }
  return links;
}

}  // namespace lanternfold
