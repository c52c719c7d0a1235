#include "EchoService/IpNetwork.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <system_error>

#include "NetBase/AddressText.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

void clearBitsFrom(std::span<std::uint8_t> bytes, unsigned position) {
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    const auto before = static_cast<unsigned>(8 * index);
    const unsigned kept = std::clamp(position, before, before + 8) - before;
    bytes[index] = static_cast<std::uint8_t>(bytes[index] & (0xFF00U >> kept));
  }
}

/// As it stands in the text: an IPv4 address in IPv6 form stays one.
std::optional<IpAddress> addressAsWritten(std::string_view text) {
  if (const auto address = ipv4OfText(text)) return *address;
  if (const auto address = ipv6OfText(text)) return *address;
  return std::nullopt;
}

std::optional<unsigned> parsePrefixLength(std::string_view text, unsigned maximum) {
  const bool hasLeadingZero = text.size() > 1 && text.front() == '0';
  unsigned length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error != std::errc() || end != text.data() + text.size() || hasLeadingZero ||
      length > maximum) {
    return std::nullopt;
  }
  return length;
}

}  // namespace

bool IpNetwork::contains(const IpAddress& address) const {
  return address.index() == base.index() && networkOf(address, prefixLength).base == base;
}

unsigned bitCount(const IpAddress& address) {
  return std::holds_alternative<IPv4Bytes>(address) ? 32 : 128;
}

IpNetwork networkOf(const IpAddress& address, unsigned prefixLength) {
  if (prefixLength > bitCount(address)) {
    fatalError("a network was asked for whose prefix is longer than an address");
  }
  IpNetwork network{.base = address, .prefixLength = prefixLength};
  std::visit([prefixLength](auto& bytes) { clearBitsFrom(bytes, prefixLength); }, network.base);
  return network;
}

std::expected<IpNetwork, std::string> parseIpNetwork(std::string_view text) {
  const std::size_t slash = text.find('/');
  const auto address = addressAsWritten(text.substr(0, slash));
  if (!address) return std::unexpected("is neither an address nor a network");
  if (withoutMapping(*address) != *address) {
    return std::unexpected("is an IPv4 network in IPv6 form; write it as an IPv4 one");
  }
  const unsigned longest = bitCount(*address);
  if (slash == std::string_view::npos) return networkOf(*address, longest);
  const auto length = parsePrefixLength(text.substr(slash + 1), longest);
  if (!length) {
    return std::unexpected("has no prefix length of 0 to " + std::to_string(longest) +
                           " behind its \"/\"");
  }
  const IpNetwork network = networkOf(*address, *length);
  if (network.base != *address) {
    return std::unexpected("has bits set beyond its prefix; the network is " +
                           ipAddressText(network.base) + "/" + std::to_string(*length));
  }
  return network;
}

}  // namespace lanternfold
