// A socket that sends one message and receives one.
//
// Made by: `SocketConnection`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include <asio/awaitable.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/address.hpp>

#include "Platform/Connection.h"

namespace lanternfold {

/// A longer reply is refused with message_size.
inline constexpr std::size_t largestReplyBytes = std::size_t{16} * 1024 * 1024;

/// On the thread of its loop alone. `close` ends what is awaited with operation_aborted.
class MessageSocket {
 public:
  virtual ~MessageSocket() = default;

  /// Empty when the peer has been reached. May be tried again with another address.
  [[nodiscard]] virtual asio::awaitable<std::error_code> connect(asio::ip::address address,
                                                                 std::uint16_t port) = 0;
  /// Empty when the message has left, or when the peer does not want all of it: what it says
  /// instead is for `receive`.
  [[nodiscard]] virtual asio::awaitable<std::error_code> send(std::string message) = 0;
  /// A datagram, or everything up to the end of a stream; none when that has no bytes.
  [[nodiscard]] virtual asio::awaitable<std::expected<std::optional<std::string>, std::error_code>>
  receive() = 0;
  virtual void close() = 0;
};

[[nodiscard]] std::unique_ptr<MessageSocket> makeMessageSocket(Transport transport,
                                                               asio::io_context& context);

}  // namespace lanternfold
