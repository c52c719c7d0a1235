// A server that leaves its peers waiting.
#pragma once

#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <vector>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Takes connections of both families and never says a word.
class SilentServer {
 public:
  SilentServer() : listener_(::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    constexpr int both = 0;
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    isListening_ =
        ::setsockopt(listener_.get(), IPPROTO_IPV6, IPV6_V6ONLY, &both, sizeof both) == 0 &&
        ::bind(listener_.get(), any, size) == 0 && ::listen(listener_.get(), 16) == 0 &&
        ::getsockname(listener_.get(), any, &size) == 0;
    port_ = std::to_string(ntohs(address.sin6_port));
  }

  [[nodiscard]] bool isListening() const { return isListening_; }
  [[nodiscard]] const std::string& port() const { return port_; }

  /// Waits for so many further connections and keeps them.
  [[nodiscard]] bool accept(int count) {
    for (; count > 0; --count) {
      pollfd ready{.fd = listener_.get(), .events = POLLIN, .revents = 0};
      if (::poll(&ready, 1, patienceMilliseconds) != 1) return false;
      connections_.emplace_back(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    }
    return true;
  }
  /// Breaks the connections, and refuses further ones.
  void end() {
    connections_.clear();
    listener_ = FileDescriptor(-1);
  }

 private:
  /// What is waited for at the most, for something that comes at once.
  static constexpr int patienceMilliseconds = 20'000;

  FileDescriptor listener_;
  bool isListening_ = false;
  std::string port_;
  std::vector<FileDescriptor> connections_;
};

}  // namespace lanternfold
