// Lays out a netlink request: the message's header, the body of its kind, attributes.
//
// Read by: the requests of this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <linux/netlink.h>

namespace lanternfold {

/// A whole message, ready to send; `NetlinkSocket` fills in the sequence number.
using NetlinkRequest = std::vector<std::uint8_t>;

class RequestBuilder {
 public:
  /// `flags` are added to NLM_F_REQUEST.
  template <typename Body>
    requires std::is_trivially_copyable_v<Body>
  RequestBuilder(std::uint16_t type, std::uint16_t flags, const Body& body)
      : RequestBuilder(type, flags) {
    append(std::as_bytes(std::span(&body, 1)));
  }

  /// The text and its terminator.
  void addText(std::uint16_t type, std::string_view text);
  void addNumber(std::uint16_t type, std::uint32_t number);

  /// What is added until `endNest`, which takes the result, stands inside an attribute of `type`.
  [[nodiscard]] std::size_t beginNest(std::uint16_t type);
  void endNest(std::size_t nest);

  [[nodiscard]] NetlinkRequest finished();

 private:
  RequestBuilder(std::uint16_t type, std::uint16_t flags);

  /// The bytes and their padding.
  void append(std::span<const std::byte> bytes);

  NetlinkRequest bytes_;
};

}  // namespace lanternfold
