#include "Tests/PlatformLinux/Url/ScriptedServer.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;

struct SocketName {
  sockaddr_storage bytes{};
  socklen_t length = 0;
};

SocketName socketNameFrom(const std::string& address, std::uint16_t port) {
  SocketName name;
  sockaddr_in v4{.sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {}, .sin_zero = {}};
  sockaddr_in6 v6{};
  v6.sin6_family = AF_INET6;
  v6.sin6_port = htons(port);
  if (inet_pton(AF_INET, address.c_str(), &v4.sin_addr) == 1) {
    name.length = sizeof v4;
    std::memcpy(&name.bytes, &v4, sizeof v4);
  } else {
    EXPECT_EQ(inet_pton(AF_INET6, address.c_str(), &v6.sin6_addr), 1) << address;
    name.length = sizeof v6;
    std::memcpy(&name.bytes, &v6, sizeof v6);
  }
  return name;
}

std::uint16_t portOf(int socket) {
  sockaddr_in6 name{};  // the port stands at the same place in both families
  socklen_t length = sizeof name;
  EXPECT_EQ(getsockname(socket, reinterpret_cast<sockaddr*>(&name), &length), 0);
  return ntohs(name.sin6_port);
}

int listenOn(const std::string& address, std::uint16_t port) {
  const SocketName name = socketNameFrom(address, port);
  const int listener = ::socket(name.bytes.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (name.bytes.ss_family == AF_INET6) {
    setsockopt(listener, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
  }
  EXPECT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&name.bytes), name.length), 0)
      << address << ": " << errno;
  EXPECT_EQ(listen(listener, 256), 0);
  return listener;
}

}  // namespace

bool ServerConnection::waitFor(short events, int milliseconds) const {
  std::array<pollfd, 2> waits{pollfd{socket_.get(), events, 0}, pollfd{ending_, POLLIN, 0}};
  if (poll(waits.data(), waits.size(), milliseconds) <= 0) return false;
  return waits[1].revents == 0;
}

std::string ServerConnection::readRequest() {
  std::string request;
  std::array<char, 4096> buffer{};
  while (!request.contains("\r\n\r\n")) {
    if (!waitFor(POLLIN, -1)) return {};
    const ssize_t count = recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (count <= 0) return {};
    request.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return request;
}

bool ServerConnection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    if (!waitFor(POLLOUT, -1)) return false;
    const ssize_t count =
        ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EAGAIN) return false;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool ServerConnection::pause(std::chrono::milliseconds duration) {
  std::array<pollfd, 2> waits{pollfd{socket_.get(), POLLRDHUP, 0}, pollfd{ending_, POLLIN, 0}};
  return poll(waits.data(), waits.size(), static_cast<int>(duration.count())) == 0;
}

void ServerConnection::waitUntilTheClientLeaves() { static_cast<void>(pause(60s)); }

void ServerConnection::reset() {
  const linger hard{.l_onoff = 1, .l_linger = 0};
  setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
  socket_ = FileDescriptor(-1);
}

ScriptedServer::ScriptedServer(Script script, const std::string& address, std::uint16_t port)
    : script_(std::move(script)),
      address_(address),
      listener_(listenOn(address, port)),
      ending_(eventfd(0, EFD_CLOEXEC)) {
  port_ = portOf(listener_.get());
  thread_ = std::thread([this] { acceptClients(); });
}

ScriptedServer::~ScriptedServer() {
  eventfd_write(ending_.get(), 1);
  thread_.join();
}

std::string ScriptedServer::url(const std::string& path, const std::string& host) const {
  const std::string literal = address_.contains(':') ? "[" + address_ + "]" : address_;
  return "http://" + (host.empty() ? literal : host) + ":" + std::to_string(port_) + path;
}

void ScriptedServer::acceptClients() {
  struct Client {
    std::atomic<bool> isServed = false;
    std::thread thread;
  };
  std::list<Client> clients;
  const auto join = [&clients](bool all) {
    std::erase_if(clients, [all](Client& client) {
      if (!all && !client.isServed) return false;
      client.thread.join();
      return true;
    });
  };
  std::array<pollfd, 2> waits{pollfd{listener_.get(), POLLIN, 0}, pollfd{ending_.get(), POLLIN, 0}};
  while (poll(waits.data(), waits.size(), -1) > 0 && waits[1].revents == 0) {
    const int socket = accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    ++accepted_;
    ++open_;
    join(false);
    Client& client = clients.emplace_back();
    client.thread = std::thread([this, socket, &client] {
      {
        ServerConnection connection(socket, ending_.get());
        script_(connection);
      }
      --open_;
      client.isServed = true;
    });
  }
  join(true);
}

std::string httpAnswer(std::string_view body, std::string_view statusLine,
                       std::string_view headerLines) {
  std::string answer = "HTTP/1.1 ";
  answer += statusLine;
  answer += "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
  answer += headerLines;
  answer += "\r\n";
  answer += body;
  return answer;
}

ScriptedServer::Script answering(std::string answer) {
  return [answer = std::move(answer)](ServerConnection& connection) {
    if (!connection.readRequest().empty()) connection.send(answer);
  };
}

ScriptedServer::Script neverAnswering() {
  return [](ServerConnection& connection) {
    if (!connection.readRequest().empty()) connection.waitUntilTheClientLeaves();
  };
}

}  // namespace lanternfold::test
