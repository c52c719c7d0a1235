// One message to a peer, and its one reply.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <system_error>

#include <asio/awaitable.hpp>

#include "NetBase/MessageSenderError.h"

namespace lanternfold {

struct MessageReply {
  std::string data;                 ///< its bytes, at least one
  std::optional<std::string> from;  ///< the peer, as "192.0.2.1:53"; none when it is not known
  friend bool operator==(const MessageReply&, const MessageReply&) = default;
};

/// The error is a `MessageSenderError` or, unchanged, one of the system.
using MessageResult = std::expected<MessageReply, std::error_code>;

class MessageSender {
 public:
  virtual ~MessageSender() = default;

  /// The message.
  [[nodiscard]] virtual const std::string& data() const = 0;

  /// Sends it, and suspends the caller until there is one outcome, without blocking a thread; the
  /// caller goes on where its own executor runs.
  [[nodiscard]] virtual asio::awaitable<MessageResult> start() = 0;

  /// Ends a running exchange.
  [[nodiscard]] virtual asio::awaitable<void> cancel() = 0;
};

}  // namespace lanternfold
