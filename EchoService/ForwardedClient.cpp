#include "EchoService/ForwardedClient.h"

#include <algorithm>
#include <optional>
#include <ranges>

#include "EchoService/HttpHeaderRules.h"
#include "EchoService/ListenAddress.h"

namespace lanternfold {
namespace {

bool isTrusted(const IpAddress& address, std::span<const IpNetwork> trusted) {
  return std::ranges::any_of(
      trusted, [&address](const IpNetwork& network) { return network.contains(address); });
}

/// "192.0.2.1", "2001:db8::1", "[2001:db8::1]", and the first and the last with ":PORT".
std::optional<IpAddress> parseForwardedAddress(std::string_view text) {
  if (const auto address = parseIpAddress(text)) return address;
  const auto withPort =
      parseListenAddress(text.ends_with(']') ? std::string(text) + ":0" : std::string(text));
  return withPort ? std::optional(withoutMapping(withPort->address)) : std::nullopt;
}

}  // namespace

std::expected<IpAddress, HttpRequestError> forwardedClient(const IpAddress& peer,
                                                           std::span<const HttpHeaderField> fields,
                                                           std::span<const IpNetwork> trusted) {
  IpAddress client = withoutMapping(peer);
  if (!isTrusted(client, trusted)) return client;
  const auto hops = httpListItems(fields, "x-forwarded-for");
  for (const std::string_view hop : std::views::reverse(hops)) {
    if (hop.empty()) continue;
    const auto address = parseForwardedAddress(hop);
    if (!address) {
      return std::unexpected(
          HttpRequestError{.sentence = "a proxy has forwarded an address that is none"});
    }
    client = *address;
    if (!isTrusted(client, trusted)) break;
  }
  return client;
}

}  // namespace lanternfold
