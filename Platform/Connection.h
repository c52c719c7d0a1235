// The seam to a connection over which one message goes to a peer and one comes back.
//
// Linux side: `SocketConnection`. Fake: `FakeConnection`. Both pass the same contract tests.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Platform/Dispatch.h"

namespace lanternfold {

enum class ConnectionState {
  setup,      ///< not started yet
  preparing,  ///< the peer is looked for
  ready,      ///< messages can be sent
  failed,     ///< it ended by itself, with an error
  cancelled,  ///< its holder ended it
};

/// Used once: `setup`, `preparing`, `ready`, and in the end `failed` or `cancelled`, from each of
/// them. Everything may be called from any thread and never blocks. The handlers are called on the
/// queue that it is started on, and not inside a call. After the one of the state has been told of
/// the end none is, and what they hold is released; without a start, with the connection.
class Connection {
 public:
  /// The error is that of `failed`, as the system gave it, and empty otherwise.
  using StateHandler = std::move_only_function<void(ConnectionState, std::error_code)>;
  /// The bytes of one whole message, at least one; none for a message, or an end, without bytes;
  /// or the system's error.
  using MessageHandler =
      std::move_only_function<void(std::expected<std::optional<std::string>, std::error_code>)>;

  virtual ~Connection() = default;

  [[nodiscard]] virtual ConnectionState state() const = 0;

  /// Told of every change, in order. Once, before the start.
  virtual void setStateHandler(StateHandler handler) = 0;

  /// Asks for the next message, also before the start. A connection over a stream has one message,
  /// which ends where the peer ends its side. Once.
  virtual void receiveMessage(MessageHandler handler) = 0;

  /// Goes from `setup` to `preparing`; one that was cancelled before says so on `queue`. `queue` is
  /// serial and outlives the connection. Once.
  virtual void start(DispatchQueue& queue) = 0;

  /// Sends one whole message; of no effect unless it is `ready`. What cannot be sent makes it fail.
  virtual void send(std::string message) = 0;

  /// Ends it and lets the peer go; of no effect after an end.
  virtual void cancel() = 0;

  /// Who is on the other end, as "192.0.2.1:53" or "[2001:db8::1]:53"; none before it is `ready`.
  [[nodiscard]] virtual std::optional<std::string> remoteEndpoint() const = 0;
};

enum class Transport { tcp, udp };

struct ConnectionTarget {
  Transport transport = Transport::tcp;
  std::string host;  ///< an address or a name
  std::uint16_t port = 0;
  friend bool operator==(const ConnectionTarget&, const ConnectionTarget&) = default;
};

class ConnectionFactory {
 public:
  virtual ~ConnectionFactory() = default;
  /// In the state `setup`; nobody is asked for anything yet. Any thread.
  [[nodiscard]] virtual std::shared_ptr<Connection> connection(ConnectionTarget target) = 0;
};

}  // namespace lanternfold
