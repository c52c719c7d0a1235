// Peers on 127.0.0.1 with plain sockets, which do what a test has them do.
#pragma once

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstdint>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Bounds what would otherwise never end, in milliseconds.
inline constexpr int peerPatience = 20'000;

inline sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// A socket bound to a free port.
class LoopbackSocket {
 public:
  explicit LoopbackSocket(int type) : socket_(::socket(AF_INET, type | SOCK_CLOEXEC, 0)) {
    const sockaddr_in any = loopback(0);
    EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&any), sizeof(any)), 0);
  }

  [[nodiscard]] int get() const { return socket_.get(); }

  [[nodiscard]] std::uint16_t port() const {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    EXPECT_EQ(::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    return ntohs(address.sin_port);
  }

 private:
  FileDescriptor socket_;
};

inline void waitForInput(int socket) {
  pollfd input{.fd = socket, .events = POLLIN, .revents = 0};
  EXPECT_EQ(::poll(&input, 1, peerPatience), 1);
}

/// Has one connection at a time.
class LoopbackListener {
 public:
  LoopbackListener() { EXPECT_EQ(::listen(listener_.get(), SOMAXCONN), 0); }

  [[nodiscard]] std::uint16_t port() const { return listener_.port(); }

  void accept() {
    waitForInput(listener_.get());
    peer_ = FileDescriptor(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    EXPECT_TRUE(peer_.isOpen());
  }
  void send(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t size = ::send(peer_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      ASSERT_GT(size, 0);
      bytes.remove_prefix(static_cast<std::size_t>(size));
    }
  }
  /// Sends nothing more.
  void endOutput() { EXPECT_EQ(::shutdown(peer_.get(), SHUT_WR), 0); }
  void close() { peer_ = FileDescriptor(-1); }
  /// Lets the other side know that it is not wanted any more.
  void reset() {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    EXPECT_EQ(::setsockopt(peer_.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce)), 0);
    close();
  }
  /// So many bytes, or those up to the end.
  [[nodiscard]] std::string receive(std::size_t size) {
    std::string received;
    std::array<char, 65536> piece{};
    while (received.size() < size) {
      waitForInput(peer_.get());
      const ssize_t count = ::recv(peer_.get(), piece.data(), piece.size(), 0);
      if (count <= 0) break;
      received.append(piece.data(), static_cast<std::size_t>(count));
    }
    return received;
  }

 private:
  LoopbackSocket listener_{SOCK_STREAM};
  FileDescriptor peer_{-1};
};

/// Answers the last datagram that it has taken.
class LoopbackDatagrams {
 public:
  [[nodiscard]] std::uint16_t port() const { return socket_.port(); }

  [[nodiscard]] std::string receive() {
    std::string datagram(65536, '\0');
    waitForInput(socket_.get());
    socklen_t size = sizeof(from_);
    const ssize_t count = ::recvfrom(socket_.get(), datagram.data(), datagram.size(), 0,
                                     reinterpret_cast<sockaddr*>(&from_), &size);
    EXPECT_GE(count, 0);
    datagram.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return datagram;
  }
  void answer(std::string_view bytes) {
    EXPECT_EQ(::sendto(socket_.get(), bytes.data(), bytes.size(), 0,
                       reinterpret_cast<const sockaddr*>(&from_), sizeof(from_)),
              static_cast<ssize_t>(bytes.size()));
  }

 private:
  LoopbackSocket socket_{SOCK_DGRAM};
  sockaddr_in from_{};
};

/// Where nobody listens.
inline std::uint16_t freePort(int type) { return LoopbackSocket(type).port(); }

}  // namespace lanternfold
