// One netlink message, and the walk over the messages of one datagram.
//
// Made by: `NetlinkMessageWalker` from the bytes of one receive call. Read by: the sockets, which
// handle the control messages, and the decoders, which take the payload.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>

#include "PlatformLinux/Netlink/ByteReader.h"
#include "PlatformLinux/Netlink/DecodeError.h"

namespace lanternfold {

struct NetlinkMessage {
  std::uint16_t type = 0;
  std::uint16_t flags = 0;
  std::uint32_t sequence = 0;
  std::uint32_t port = 0;
  /// What follows the header, without padding; lives as long as the walked bytes.
  std::span<const std::uint8_t> payload;

  /// NLM_F_DUMP_INTR: the table changed while it was dumped.
  [[nodiscard]] bool dumpWasInterrupted() const;
};

/// Walks the messages of one datagram. Every step consumes at least a header; an error ends the
/// walk.
class NetlinkMessageWalker {
 public:
  explicit NetlinkMessageWalker(std::span<const std::uint8_t> datagram) : reader_(datagram) {}

  /// The next message; none at the end. Errors, each with the subject "nlmsghdr": truncated (a
  /// header or a message runs past the end), badLength (the length is less than a header's).
  [[nodiscard]] std::expected<std::optional<NetlinkMessage>, DecodeError> next();

 private:
  ByteReader reader_;
};

/// What a control message says; other messages are `none`.
enum class NetlinkControl {
  none,            ///< not a control message: data
  noOperation,     ///< NLMSG_NOOP, to be skipped
  acknowledgment,  ///< NLMSG_ERROR with code 0
  done,            ///< NLMSG_DONE with code 0 or without one
  failure,         ///< NLMSG_ERROR or NLMSG_DONE with an error code
  overrun,         ///< NLMSG_OVERRUN: messages were lost
};

struct NetlinkControlAnswer {
  NetlinkControl control = NetlinkControl::none;
  /// The errno of a failure, positive; 0 otherwise.
  int errorNumber = 0;
  friend bool operator==(const NetlinkControlAnswer&, const NetlinkControlAnswer&) = default;
};

/// Error: truncated with the subject "nlmsgerr" when an NLMSG_ERROR does not hold its code.
[[nodiscard]] std::expected<NetlinkControlAnswer, DecodeError> decodeControl(
    const NetlinkMessage& message);

}  // namespace lanternfold
