#include "NetBase/AddressText.h"

#include <arpa/inet.h>
#include <array>
#include <string_view>
#include <sys/socket.h>

namespace lanternfold {
namespace {

template <typename Bytes>
std::optional<Bytes> bytesOfText(int family, std::string_view text) {
  // The C library would stop reading at a zero byte.
  if (text.size() >= INET6_ADDRSTRLEN || text.contains('\0')) return std::nullopt;
  Bytes bytes{};
  if (inet_pton(family, std::string(text).c_str(), bytes.data()) != 1) return std::nullopt;
  return bytes;
}

}  // namespace

// Written out instead of asking inet_ntop, which goes through the printf machinery: a walk over the
// interfaces turns three such addresses into text for each of them, and that alone would take more
// time than the kernel needs to list them.
std::string ipv4Text(const IPv4Bytes& address) {
  std::array<char, sizeof("255.255.255.255")> text{};
  char* end = text.data();
  for (const std::uint8_t byte : address) {
    if (end != text.data()) *end++ = '.';
    if (byte >= 100) *end++ = static_cast<char>('0' + byte / 100);
    if (byte >= 10) *end++ = static_cast<char>('0' + byte / 10 % 10);
    *end++ = static_cast<char>('0' + byte % 10);
  }
  return {text.data(), end};
}

std::string ipv6Text(const IPv6Bytes& address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  // Cannot fail: the family is known and the buffer holds the longest text.
  inet_ntop(AF_INET6, address.data(), text.data(), static_cast<socklen_t>(text.size()));
  return text.data();
}

std::string hardwareAddressText(const LinkAddress& address) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::array<char, 3 * LinkAddressBytes::maximumSize> text{};
  char* end = text.data();
  for (const std::uint8_t byte : address.bytes) {
    if (end != text.data()) *end++ = ':';
    *end++ = digits[byte >> 4U];
    *end++ = digits[byte & 0x0FU];
  }
  return {text.data(), end};
}

std::optional<IPv4Bytes> ipv4OfText(std::string_view text) {
  return bytesOfText<IPv4Bytes>(AF_INET, text);
}

std::optional<IPv6Bytes> ipv6OfText(std::string_view text) {
  return bytesOfText<IPv6Bytes>(AF_INET6, text);
}

}  // namespace lanternfold
