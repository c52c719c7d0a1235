// Connections over TCP and UDP sockets.
//
// Made by: the composition, which hands the factory on.
#pragma once

#include <memory>

#include "Platform/Connection.h"

namespace lanternfold {

class EventLoop;
class LookupThreads;

/// A host's addresses are tried in the system's order, and the last one's error counts. Over UDP a
/// peer is reached once its address is known.
class SocketConnection final : public Connection {
 public:
  /// `loop` outlives the connection. Names are looked up on `lookupThreads`.
  SocketConnection(ConnectionTarget target, EventLoop& loop,
                   std::shared_ptr<LookupThreads> lookupThreads);
  /// Cancels it.
  ~SocketConnection() override;

  [[nodiscard]] ConnectionState state() const override;
  void setStateHandler(StateHandler handler) override;
  void receiveMessage(MessageHandler handler) override;
  void start(DispatchQueue& queue) override;
  void send(std::string message) override;
  void cancel() override;
  [[nodiscard]] std::optional<std::string> remoteEndpoint() const override;

 private:
  class Session;
  std::shared_ptr<Session> session_;
};

class SocketConnectionFactory final : public ConnectionFactory {
 public:
  /// `loop` outlives the factory and its connections.
  explicit SocketConnectionFactory(EventLoop& loop);
  [[nodiscard]] std::shared_ptr<Connection> connection(ConnectionTarget target) override;

 private:
  EventLoop& loop_;
  const std::shared_ptr<LookupThreads> lookupThreads_;
};

}  // namespace lanternfold
