// Link, address and route reports as the kernel sends them, built from their parts.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// One message's payload, growing; the header stays apart.
class EventBytes {
 public:
  template <typename Header>
  EventBytes(std::uint16_t type, const Header& header) : type_(type) {
    append(&header, sizeof(header));
  }

  EventBytes& text(std::uint16_t attribute, std::string_view value) {
    std::vector<char> terminated(value.begin(), value.end());
    terminated.push_back('\0');
    return bytes(attribute, terminated.data(), terminated.size());
  }
  template <typename Value>
  EventBytes& value(std::uint16_t attribute, const Value& value) {
    return bytes(attribute, &value, sizeof(value));
  }
  EventBytes& bytes(std::uint16_t attribute, const void* data, std::size_t size) {
    const rtattr header{.rta_len = static_cast<std::uint16_t>(sizeof(rtattr) + size),
                        .rta_type = attribute};
    append(&header, sizeof(header));
    append(data, size);
    return *this;
  }

  /// Lives as long as this object.
  [[nodiscard]] NetlinkMessage message() const { return {.type = type_, .payload = payload_}; }

 private:
  void append(const void* data, std::size_t size) {
    const std::size_t start = payload_.size();
    payload_.resize(start + NLMSG_ALIGN(size));
    std::memcpy(payload_.data() + start, data, size);
  }

  std::uint16_t type_;
  std::vector<std::uint8_t> payload_;
};

}  // namespace lanternfold
