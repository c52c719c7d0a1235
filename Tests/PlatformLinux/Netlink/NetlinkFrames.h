// Builds netlink frames byte by byte, well-formed or not.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include <linux/netlink.h>

#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold::test {

using Bytes = std::vector<std::uint8_t>;

inline void append(Bytes& bytes, std::span<const std::uint8_t> more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

template <typename Value>
Bytes bytesOf(const Value& value) {
  Bytes bytes(sizeof(Value));
  std::memcpy(bytes.data(), &value, sizeof(Value));
  return bytes;
}

/// The text and its terminator.
inline Bytes textBytes(std::string_view text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

/// One attribute with its padding.
inline Bytes attribute(int type, const Bytes& value) {
  const nlattr header{.nla_len = static_cast<std::uint16_t>(sizeof(nlattr) + value.size()),
                      .nla_type = static_cast<std::uint16_t>(type)};
  Bytes bytes = bytesOf(header);
  append(bytes, value);
  bytes.resize((bytes.size() + 3) / 4 * 4);
  return bytes;
}

template <typename Number>
Bytes numberAttributeBytes(int type, Number value) {
  return attribute(type, bytesOf(value));
}

inline Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes bytes;
  for (const Bytes& part : parts) append(bytes, part);
  return bytes;
}

/// A whole message with its padding.
inline Bytes message(int type, const Bytes& payload, int flags = 0) {
  const nlmsghdr header{.nlmsg_len = static_cast<std::uint32_t>(sizeof(nlmsghdr) + payload.size()),
                        .nlmsg_type = static_cast<std::uint16_t>(type),
                        .nlmsg_flags = static_cast<std::uint16_t>(flags),
                        .nlmsg_seq = 7,
                        .nlmsg_pid = 9};
  Bytes bytes = bytesOf(header);
  append(bytes, payload);
  bytes.resize((bytes.size() + 3) / 4 * 4);
  return bytes;
}

/// The first message of a datagram, which must be well-formed so far; valid as long as the bytes.
inline NetlinkMessage firstMessage(std::span<const std::uint8_t> datagram) {
  return NetlinkMessageWalker(datagram).next().value().value();
}

/// A message value that points at a payload, without a frame around it.
inline NetlinkMessage payloadMessage(int type, std::span<const std::uint8_t> payload) {
  return {.type = static_cast<std::uint16_t>(type), .payload = payload};
}

}  // namespace lanternfold::test
