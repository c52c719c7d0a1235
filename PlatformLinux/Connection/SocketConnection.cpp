#include "PlatformLinux/Connection/SocketConnection.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/post.hpp>
#include <asio/use_awaitable.hpp>

#include "PlatformLinux/Connection/AddressLookup.h"
#include "PlatformLinux/Connection/MessageSocket.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Message = std::expected<std::optional<std::string>, std::error_code>;

bool isEnd(ConnectionState state) {
  return state == ConnectionState::failed || state == ConnectionState::cancelled;
}

std::string endpointText(const asio::ip::address& address, std::uint16_t port) {
  const std::string text = address.to_string();
  return (address.is_v6() ? "[" + text + "]" : text) + ":" + std::to_string(port);
}

/// The library has a category of its own for the system's errors.
std::error_code systemError(std::error_code error) {
  return error.category() == asio::system_category()
             ? std::error_code(error.value(), std::generic_category())
             : error;
}

asio::awaitable<AddressLookup::Result> lookedUp(std::shared_ptr<AddressLookup> lookup,
                                                std::string host) {
  auto initiation = [](auto handler, const std::shared_ptr<AddressLookup>& running,
                       const std::string& name) {
    auto executor = asio::get_associated_executor(handler);
    running->start(name, [executor,
                          handler = std::move(handler)](AddressLookup::Result result) mutable {
      asio::post(executor, [handler = std::move(handler), result = std::move(result)]() mutable {
        std::move(handler)(std::move(result));
      });
    });
  };
  return asio::async_initiate<const asio::use_awaitable_t<>&, void(AddressLookup::Result)>(
      std::move(initiation), asio::use_awaitable, std::move(lookup), std::move(host));
}

}  // namespace

/// The socket on the event loop, and the handlers on the queue. It outlives the connection for as
/// long as something under way holds it.
class SocketConnection::Session : public std::enable_shared_from_this<Session> {
 public:
  Session(ConnectionTarget target, EventLoop& loop, std::shared_ptr<LookupThreads> lookupThreads)
      : target_(std::move(target)),
        loop_(loop),
        socket_(makeMessageSocket(target_.transport, loop.context())),
        lookup_(std::make_shared<AddressLookup>(std::move(lookupThreads))) {}

  // Any thread.

  [[nodiscard]] ConnectionState state() const {
    const std::lock_guard lock(mutex_);
    return state_;
  }

  [[nodiscard]] std::optional<std::string> remoteEndpoint() const {
    const std::lock_guard lock(mutex_);
    return remoteEndpoint_;
  }

  void setStateHandler(StateHandler handler) {
    const std::lock_guard lock(mutex_);
    stateHandler_ = std::move(handler);
  }

  void receiveMessage(MessageHandler handler) {
    const std::lock_guard lock(mutex_);
    if (isEnd(state_)) return;
    messageHandler_ = std::move(handler);
    if (state_ == ConnectionState::ready) spawn([this] { return receive(); });
  }

  void start(DispatchQueue& queue) {
    const std::lock_guard lock(mutex_);
    if (queue_ != nullptr) fatalError("a connection was started twice");
    queue_ = &queue;
    if (isEnd(state_)) return tell(state_, {});
    change(ConnectionState::preparing);
    spawn([this] { return connect(); });
  }

  void send(std::string message) {
    if (state() != ConnectionState::ready) return;
    spawn([this, message = std::move(message)]() mutable { return sendWhole(std::move(message)); });
  }

  void cancel() {
    const std::lock_guard lock(mutex_);
    end(ConnectionState::cancelled, {});
    lookup_->cancel();
    loop_.post([self = shared_from_this()] { self->socket_->close(); });
  }

 private:
  /// Runs `work` on the event loop, not inside this call, and holds the session until it is done.
  void spawn(std::move_only_function<asio::awaitable<void>()> work) {
    loop_.post([self = shared_from_this(), work = std::move(work)]() mutable {
      asio::co_spawn(
          self->loop_.context(), [self, work = std::move(work)]() mutable { return work(); },
          asio::detached);
    });
  }

  // On the event loop.

  asio::awaitable<void> connect() {
    const AddressLookup::Result addresses = co_await lookedUp(lookup_, target_.host);
    if (!addresses) co_return fail(addresses.error());
    std::error_code error = asio::error::host_not_found;
    for (const asio::ip::address& address : *addresses) {
      if (hasEnded()) co_return;
      error = co_await socket_->connect(address, target_.port);
      if (!error) co_return becomeReady(endpointText(address, target_.port));
    }
    fail(error);
  }

  asio::awaitable<void> sendWhole(std::string message) {
    if (hasEnded()) co_return;
    if (const std::error_code error = co_await socket_->send(std::move(message))) fail(error);
  }

  asio::awaitable<void> receive() {
    if (hasEnded()) co_return;
    Message message = co_await socket_->receive();
    if (!message) message = std::unexpected(systemError(message.error()));
    const std::lock_guard lock(mutex_);
    if (isEnd(state_)) co_return;
    queue_->async([self = shared_from_this(), message = std::move(message)]() mutable {
      self->tellMessage(std::move(message));
    });
  }

  void becomeReady(std::string endpoint) {
    const std::lock_guard lock(mutex_);
    if (isEnd(state_)) return socket_->close();
    remoteEndpoint_ = std::move(endpoint);
    change(ConnectionState::ready);
    if (messageHandler_) spawn([this] { return receive(); });
  }

  void fail(std::error_code error) {
    const std::lock_guard lock(mutex_);
    end(ConnectionState::failed, systemError(error));
    socket_->close();
  }

  [[nodiscard]] bool hasEnded() const { return isEnd(state()); }

  // Under the lock.

  void change(ConnectionState state) {
    state_ = state;
    tell(state, {});
  }

  void end(ConnectionState state, std::error_code error) {
    if (isEnd(state_)) return;
    state_ = state;
    if (queue_ != nullptr) tell(state, error);
  }

  void tell(ConnectionState state, std::error_code error) {
    queue_->async([self = shared_from_this(), state, error] { self->tellState(state, error); });
  }

  // On the queue.

  void tellState(ConnectionState state, std::error_code error) {
    StateHandler handler;
    MessageHandler released;
    {
      const std::lock_guard lock(mutex_);
      handler = std::exchange(stateHandler_, nullptr);
      if (isEnd(state)) released = std::exchange(messageHandler_, nullptr);
    }
    if (handler) handler(state, error);
    if (isEnd(state)) return;
    const std::lock_guard lock(mutex_);
    stateHandler_ = std::move(handler);
  }

  void tellMessage(Message message) {
    MessageHandler handler;
    {
      const std::lock_guard lock(mutex_);
      handler = std::exchange(messageHandler_, nullptr);
    }
    if (handler) handler(std::move(message));
  }

  const ConnectionTarget target_;
  EventLoop& loop_;
  const std::unique_ptr<MessageSocket> socket_;  // on the event loop
  const std::shared_ptr<AddressLookup> lookup_;

  mutable std::mutex mutex_;  // guards the rest
  ConnectionState state_ = ConnectionState::setup;
  DispatchQueue* queue_ = nullptr;
  StateHandler stateHandler_;
  MessageHandler messageHandler_;
  std::optional<std::string> remoteEndpoint_;
};

SocketConnection::SocketConnection(ConnectionTarget target, EventLoop& loop,
                                   std::shared_ptr<LookupThreads> lookupThreads)
    : session_(std::make_shared<Session>(std::move(target), loop, std::move(lookupThreads))) {}

SocketConnection::~SocketConnection() { session_->cancel(); }

ConnectionState SocketConnection::state() const { return session_->state(); }

void SocketConnection::setStateHandler(StateHandler handler) {
  session_->setStateHandler(std::move(handler));
}

void SocketConnection::receiveMessage(MessageHandler handler) {
  session_->receiveMessage(std::move(handler));
}

void SocketConnection::start(DispatchQueue& queue) { session_->start(queue); }

void SocketConnection::send(std::string message) { session_->send(std::move(message)); }

void SocketConnection::cancel() { session_->cancel(); }

std::optional<std::string> SocketConnection::remoteEndpoint() const {
  return session_->remoteEndpoint();
}

SocketConnectionFactory::SocketConnectionFactory(EventLoop& loop)
    : loop_(loop), lookupThreads_(std::make_shared<LookupThreads>()) {}

std::shared_ptr<Connection> SocketConnectionFactory::connection(ConnectionTarget target) {
  return std::make_shared<SocketConnection>(std::move(target), loop_, lookupThreads_);
}

}  // namespace lanternfold
