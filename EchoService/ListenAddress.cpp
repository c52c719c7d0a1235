#include "EchoService/ListenAddress.h"

#include <charconv>
#include <system_error>

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

std::optional<IpAddress> parseHost(std::string_view text) {
  if (text.starts_with('[') && text.ends_with(']')) {
    const auto address = ipv6OfText(text.substr(1, text.size() - 2));
    return address ? std::optional<IpAddress>(*address) : std::nullopt;
  }
  const auto address = ipv4OfText(text);
  return address ? std::optional<IpAddress>(*address) : std::nullopt;
}

}  // namespace

std::optional<ListenAddress> parseListenAddress(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto address = parseHost(text.substr(0, colon));
  const std::string_view portText = text.substr(colon + 1);
  std::uint16_t port = 0;
  const auto [end, error] =
      std::from_chars(portText.data(), portText.data() + portText.size(), port);
  if (!address || error != std::errc() || end != portText.data() + portText.size()) {
    return std::nullopt;
  }
  return ListenAddress{.address = *address, .port = port};
}

std::string listenAddressText(const ListenAddress& listen) {
  const std::string host = ipAddressText(listen.address);
  const bool isIpv6 = std::holds_alternative<IPv6Bytes>(listen.address);
  return (isIpv6 ? "[" + host + "]" : host) + ":" + std::to_string(listen.port);
}

}  // namespace lanternfold
