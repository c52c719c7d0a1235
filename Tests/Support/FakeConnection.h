// A connection in memory: the test is the peer, and the network on the way to it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Connection.h"
#include "Support/FatalError.h"

namespace lanternfold {

/// On the test's own thread.
class FakeConnection final : public Connection {
 public:
  // The peer and the network. What they do after an end has no effect.

  void becomeReady(std::string endpoint = "192.0.2.1:7") {
    if (state_ != ConnectionState::preparing) return;
    endpoint_ = std::move(endpoint);
    change(ConnectionState::ready, {});
  }
  void fail(std::error_code error) {
    if (!hasEnded()) change(ConnectionState::failed, error);
  }
  void reply(std::string bytes) { deliver(std::optional(std::move(bytes))); }
  void replyWithoutData() { deliver(std::nullopt); }
  void failToReceive(std::error_code error) { deliver(std::unexpected(error)); }

  [[nodiscard]] const std::vector<std::string>& sent() const { return sent_; }

  [[nodiscard]] const DispatchQueue* startedOn() const { return queue_; }
  /// Calls of `cancel`.
  [[nodiscard]] int cancellations() const { return cancellations_; }

  // The program.

  [[nodiscard]] ConnectionState state() const override { return state_; }
  void setStateHandler(StateHandler handler) override { handlers_->state = std::move(handler); }
  void receiveMessage(MessageHandler handler) override {
    if (!hasEnded()) handlers_->message = std::move(handler);
  }
  void start(DispatchQueue& queue) override {
    if (queue_ != nullptr) fatalError("a connection was started twice");
    queue_ = &queue;
    change(hasEnded() ? state_ : ConnectionState::preparing, {});
  }
  void send(std::string message) override {
    if (state_ == ConnectionState::ready) sent_.push_back(std::move(message));
  }
  void cancel() override {
    ++cancellations_;
    if (!hasEnded()) change(ConnectionState::cancelled, {});
  }
  [[nodiscard]] std::optional<std::string> remoteEndpoint() const override { return endpoint_; }

 private:
  struct Handlers {
    StateHandler state;
    MessageHandler message;
  };

  [[nodiscard]] bool hasEnded() const {
    return state_ == ConnectionState::failed || state_ == ConnectionState::cancelled;
  }

  void change(ConnectionState state, std::error_code error) {
    state_ = state;
    if (queue_ == nullptr) return;
    queue_->async([handlers = handlers_, state, error] {
      if (handlers->state) handlers->state(state, error);
      if (state == ConnectionState::failed || state == ConnectionState::cancelled) *handlers = {};
    });
  }

  void deliver(std::expected<std::optional<std::string>, std::error_code> message) {
    if (state_ != ConnectionState::ready) return;
    queue_->async([handlers = handlers_, message = std::move(message)]() mutable {
      if (auto handler = std::exchange(handlers->message, nullptr)) handler(std::move(message));
    });
  }

  ConnectionState state_ = ConnectionState::setup;
  DispatchQueue* queue_ = nullptr;
  std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
  std::optional<std::string> endpoint_;
  std::vector<std::string> sent_;
  int cancellations_ = 0;
};

/// Hands out fakes, and keeps them for the test.
class FakeConnectionFactory final : public ConnectionFactory {
 public:
  [[nodiscard]] std::shared_ptr<Connection> connection(ConnectionTarget target) override {
    targets.push_back(std::move(target));
    connections.push_back(std::make_shared<FakeConnection>());
    return connections.back();
  }

  std::vector<ConnectionTarget> targets;
  std::vector<std::shared_ptr<FakeConnection>> connections;
};

}  // namespace lanternfold
