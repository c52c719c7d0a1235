// Builds the routing messages of the other kernel, byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/NetworkKernel.h"

namespace lanternfold::darwin {

using Bytes = std::vector<std::byte>;

template <typename Number>
void appendNumber(Bytes& bytes, Number number) {
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    bytes.push_back(static_cast<std::byte>(static_cast<std::uint64_t>(number) >> (8U * i)));
  }
}

inline void append(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

inline void appendZeros(Bytes& bytes, std::size_t count) { bytes.resize(bytes.size() + count); }

/// Writes the message's length into its first two bytes.
inline Bytes withLength(Bytes message) {
  message[0] = static_cast<std::byte>(message.size());
  message[1] = static_cast<std::byte>(message.size() >> 8U);
  return message;
}

inline Bytes joined(const std::vector<Bytes>& messages) {
  Bytes all;
  for (const Bytes& message : messages) append(all, message);
  return all;
}

// Socket addresses, as long as they say in their first byte.

inline Bytes ipv4SocketAddress(const IPv4Bytes& address) {
  Bytes bytes{std::byte{16}, std::byte{2}, std::byte{0}, std::byte{0}};
  for (const std::uint8_t byte : address) bytes.push_back(std::byte{byte});
  appendZeros(bytes, 8);
  return bytes;
}

inline Bytes ipv6SocketAddress(const IPv6Bytes& address) {
  Bytes bytes{std::byte{28}, std::byte{30}};
  appendZeros(bytes, 6);
  for (const std::uint8_t byte : address) bytes.push_back(std::byte{byte});
  appendZeros(bytes, 4);
  return bytes;
}

/// With room for twelve bytes of name and address, or as many as they take.
inline Bytes linkSocketAddress(std::string_view name, const LinkAddress& address,
                               std::uint16_t index) {
  Bytes bytes{std::byte{0}, std::byte{18}};
  appendNumber(bytes, index);
  bytes.push_back(std::byte{6});
  bytes.push_back(static_cast<std::byte>(name.size()));
  bytes.push_back(static_cast<std::byte>(address.bytes.size()));
  bytes.push_back(std::byte{0});
  for (const char character : name) bytes.push_back(static_cast<std::byte>(character));
  for (const std::uint8_t byte : address.bytes) bytes.push_back(std::byte{byte});
  if (bytes.size() < 20) bytes.resize(20);
  bytes[0] = static_cast<std::byte>(bytes.size());
  return bytes;
}

/// `address` with zeros behind it up to the next multiple of 8.
inline Bytes padded(Bytes address) {
  address.resize((address.size() + 7) / 8 * 8);
  return address;
}

/// The statistics block (if_data64) of a link.
inline Bytes statistics(const LinkRecord& link) {
  Bytes bytes{std::byte{link.type}, std::byte{0}, std::byte{link.physical}};
  appendZeros(bytes, 5);
  appendNumber(bytes, link.mtu);
  appendZeros(bytes, 4);  // metric
  for (const std::uint64_t number :
       {link.baudrate, link.recvPackets, link.recvErrors, link.sentPackets, link.sentErrors,
        link.collisions, link.recvBytes, link.sentBytes}) {
    appendNumber(bytes, number);
  }
  appendZeros(bytes, 48);  // multicasts, drops, times
  return bytes;
}

/// A message of an interface list: header, statistics and then `address`.
inline Bytes interfaceMessage(const LinkRecord& link, const Bytes& address,
                              std::uint8_t type = 18) {
  Bytes message{std::byte{0}, std::byte{0}, std::byte{5}, std::byte{type}};
  appendNumber(message, std::uint32_t{0x10});    // addresses: the link-level one
  appendNumber(message, std::uint32_t{0x8863});  // flags
  appendNumber(message, static_cast<std::uint16_t>(link.index));
  appendZeros(message, 18);  // padding, send queue, timer
  append(message, statistics(link));
  append(message, address);
  return withLength(std::move(message));
}

inline Bytes interfaceMessage(const LinkRecord& link) {
  return interfaceMessage(link, linkSocketAddress(link.name, link.hardwareAddress,
                                                  static_cast<std::uint16_t>(link.index)));
}

/// A message of a route dump: header and then `addresses` as they are. `presence` has a bit for
/// each address.
inline Bytes routeMessage(std::uint16_t index, std::uint32_t presence, const Bytes& addresses) {
  Bytes message{std::byte{0}, std::byte{0}, std::byte{5}, std::byte{4}};
  appendNumber(message, index);
  appendZeros(message, 2);
  appendNumber(message, std::uint32_t{0x803});  // flags: up, gateway, static
  appendNumber(message, presence);
  appendZeros(message, 76);  // process, sequence, error, use, metrics
  append(message, addresses);
  return withLength(std::move(message));
}

/// A default route with destination, gateway and an empty mask.
inline Bytes defaultRouteMessage(std::uint16_t index, const IPv4Bytes& gateway) {
  return routeMessage(index, 0b111,
                      joined({ipv4SocketAddress({}), ipv4SocketAddress(gateway), Bytes(8)}));
}

}  // namespace lanternfold::darwin
