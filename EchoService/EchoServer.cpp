#include "EchoService/EchoServer.h"

#include <chrono>
#include <list>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/v6_only.hpp>
#include <asio/steady_timer.hpp>

#include "EchoService/EchoConnection.h"

namespace lanternfold {
namespace {

using Tcp = asio::ip::tcp;

/// Before another try when the system has no descriptor or memory for a connection: it waits in the
/// kernel's queue meanwhile.
constexpr std::chrono::milliseconds pauseWithoutResources{100};

Tcp::endpoint endpointOf(const ListenAddress& listen) {
  if (const auto* ipv4 = std::get_if<IPv4Bytes>(&listen.address)) {
    return {asio::ip::address_v4(*ipv4), listen.port};
  }
  return {asio::ip::address_v6(std::get<IPv6Bytes>(listen.address)), listen.port};
}

IpAddress addressOf(const Tcp::endpoint& endpoint) {
  const asio::ip::address address = endpoint.address();
  if (address.is_v4()) return address.to_v4().to_bytes();
  return withoutMapping(address.to_v6().to_bytes());
}

/// The networking library's own category equals none of the standard conditions.
std::error_code systemError(const asio::error_code& error) {
  return {error.value(), std::system_category()};
}

std::error_code listenAt(Tcp::acceptor& acceptor, const Tcp::endpoint& endpoint) {
  std::error_code error;
  error = acceptor.open(endpoint.protocol(), error);
  // An address that was used a moment ago is free again at once.
  if (!error) error = acceptor.set_option(Tcp::acceptor::reuse_address(true), error);
  if (!error && endpoint.address().is_v6()) {
    error = acceptor.set_option(asio::ip::v6_only(true), error);
  }
  if (!error) error = acceptor.bind(endpoint, error);
  if (!error) error = acceptor.listen(asio::socket_base::max_listen_connections, error);
  return error;
}

bool isLackOfResources(const std::error_code& error) {
  return error == std::errc::too_many_files_open || error == std::errc::not_enough_memory ||
         error == std::errc::too_many_files_open_in_system || error == std::errc::no_buffer_space;
}

struct Listener {
  Tcp::acceptor acceptor;
  asio::steady_timer pause;
};

}  // namespace

/// The handlers keep it, so that one that comes late finds it closed and not gone.
class EchoServer::Reception : public std::enable_shared_from_this<Reception> {
 public:
  Reception(asio::io_context& loop, EchoConnectionSettings settings)
      : loop_(loop),
        settings_(std::make_shared<const EchoConnectionSettings>(std::move(settings))) {}

  std::expected<ListenAddress, std::error_code> listen(const ListenAddress& where) {
    Listener& listener = listeners_.emplace_back(Tcp::acceptor(loop_), asio::steady_timer(loop_));
    std::error_code error = listenAt(listener.acceptor, endpointOf(where));
    Tcp::endpoint endpoint;
    if (!error) endpoint = listener.acceptor.local_endpoint(error);
    if (error) return std::unexpected(systemError(error));
    return ListenAddress{.address = where.address, .port = endpoint.port()};
  }

  void acceptEverywhere() {
    for (Listener& listener : listeners_) accept(listener);
  }

  void close() {
    closed_ = true;
    std::error_code ignored;
    for (Listener& listener : listeners_) {
      static_cast<void>(listener.acceptor.close(ignored));
      listener.pause.cancel();
    }
    for (Connections* connections : {&served_, &refused_}) {
      for (const auto& connection : *connections) connection->close();
      connections->clear();
    }
  }

 private:
  using Connections = std::unordered_set<std::shared_ptr<EchoConnection>>;

  void accept(Listener& listener) {
    listener.acceptor.async_accept(
        [self = shared_from_this(), &listener](const std::error_code& error, Tcp::socket socket) {
          if (self->closed_) return;
          if (!error) self->receive(std::move(socket));
          if (isLackOfResources(systemError(error))) {
            self->pause(listener);
          } else {
            self->accept(listener);
          }
        });
  }

  void pause(Listener& listener) {
    listener.pause.expires_after(pauseWithoutResources);
    listener.pause.async_wait([self = shared_from_this(), &listener](const std::error_code&) {
      if (!self->closed_) self->accept(listener);
    });
  }

  void receive(Tcp::socket socket) {
    std::error_code error;
    const Tcp::endpoint peer = socket.remote_endpoint(error);
    // Whoever has gone again already needs no answer.
    if (error) return;
    static_cast<void>(socket.set_option(Tcp::no_delay(true), error));
    const bool isRoom = served_.size() < settings_->limits.connections;
    if (!isRoom && refused_.size() >= settings_->limits.refusals) return;
    Connections& connections = isRoom ? served_ : refused_;
    auto connection = std::make_shared<EchoConnection>(
        std::move(socket), addressOf(peer), settings_,
        [weak = weak_from_this(), isRoom](const std::shared_ptr<EchoConnection>& closed) {
          if (const auto self = weak.lock())
            (isRoom ? self->served_ : self->refused_).erase(closed);
        });
    connections.insert(connection);
    if (isRoom) {
      connection->serve();
    } else {
      connection->refuse();
    }
  }

  asio::io_context& loop_;
  std::shared_ptr<const EchoConnectionSettings> settings_;
  std::list<Listener> listeners_;  // whose places do not change
  Connections served_;
  Connections refused_;
  bool closed_ = false;
};

EchoServer::EchoServer(asio::io_context& loop, EchoConnectionSettings settings)
    : reception_(std::make_shared<Reception>(loop, std::move(settings))) {}

EchoServer::~EchoServer() { reception_->close(); }

std::expected<std::vector<ListenAddress>, EchoListenError> EchoServer::listen(
    std::span<const ListenAddress> addresses) {
  std::vector<ListenAddress> listening;
  for (const ListenAddress& address : addresses) {
    const auto bound = reception_->listen(address);
    if (!bound) {
      reception_->close();
      return std::unexpected(EchoListenError{.where = address, .error = bound.error()});
    }
    listening.push_back(*bound);
  }
  reception_->acceptEverywhere();
  return listening;
}

}  // namespace lanternfold
