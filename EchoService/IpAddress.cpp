#include "EchoService/IpAddress.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

constexpr std::array<std::uint8_t, 12> mappingPrefix{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};

}  // namespace

std::optional<IpAddress> parseIpAddress(std::string_view text) {
  if (const auto address = ipv4OfText(text)) return *address;
  if (const auto address = ipv6OfText(text)) return withoutMapping(*address);
  return std::nullopt;
}

std::string ipAddressText(const IpAddress& address) {
  const auto* ipv4 = std::get_if<IPv4Bytes>(&address);
  return ipv4 != nullptr ? ipv4Text(*ipv4) : ipv6Text(std::get<IPv6Bytes>(address));
}

IpAddress withoutMapping(const IpAddress& address) {
  const auto* ipv6 = std::get_if<IPv6Bytes>(&address);
  if (ipv6 == nullptr) return address;
  if (!std::ranges::equal(std::span(*ipv6).first<mappingPrefix.size()>(), mappingPrefix)) {
    return address;
  }
  IPv4Bytes ipv4{};
  std::ranges::copy(std::span(*ipv6).subspan<mappingPrefix.size()>(), ipv4.begin());
  return ipv4;
}

}  // namespace lanternfold
