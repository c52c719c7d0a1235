// Sends one message over a connection that was prepared for it.
//
// Made by: whoever has the connection, one for each exchange.
#pragma once

#include <memory>

#include "NetBase/MessageSender.h"
#include "Platform/Connection.h"
#include "Platform/Dispatch.h"

namespace lanternfold {

/// Any thread. An exchange goes on when its sender is released meanwhile: whoever awaits it gets
/// the outcome.
class NetworkMessageSender final : public MessageSender {
 public:
  /// `timeout` is the exchange's time limit in seconds; one that is not above zero has passed at
  /// once, and without one there is no limit. `connection` was not started and is this sender's
  /// alone; it runs on `dispatchQueue`, which is serial, and the limit is watched on `mainQueue`.
  /// Both outlive the exchange.
  NetworkMessageSender(std::string data, std::shared_ptr<Connection> connection,
                       std::optional<double> timeout, DispatchQueue& dispatchQueue,
                       DispatchQueue& mainQueue);

  [[nodiscard]] const std::string& data() const override;
  [[nodiscard]] std::optional<double> timeout() const;
  /// Whether the reply has been delivered.
  [[nodiscard]] bool isComplete() const;

  /// The first call runs the exchange. `genericFailure` when the connection was used before, or
  /// when somebody else ends it; `cancelled` after `cancel`, also when that came first; `timeout`
  /// when the limit has passed; `noData` for a reply without bytes; the system's errors as they
  /// are. In the end the connection is cancelled.
  [[nodiscard]] asio::awaitable<MessageResult> start() override;

  [[nodiscard]] asio::awaitable<void> cancel() override;

 private:
  class Exchange;
  std::shared_ptr<Exchange> exchange_;
};

}  // namespace lanternfold
