// Exchanges of datagrams by the message sender against the same loop on bare sockets, both with a
// peer in a process of its own, whose time counts for neither.
#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstdint>
#include <netinet/in.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>
#include <benchmark/benchmark.h>

#include "Benchmarks/Groups.h"
#include "NetBase/NetworkMessageSender.h"
#include "PlatformLinux/Connection/SocketConnection.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

constexpr double aim = 1.5;
constexpr int exchanges = 10'000;
constexpr std::string_view question = "a question of some forty bytes, or so";

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// Sends every datagram back, until it is destroyed.
class EchoProcess {
 public:
  EchoProcess() {
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof(address);
    auto* const raw = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket.get(), raw, size) != 0 || ::getsockname(socket.get(), raw, &size) != 0) {
      fatalError("the benchmark cannot bind a socket on loopback");
    }
    port_ = ntohs(address.sin_port);
    process_ = ::fork();
    if (process_ == 0) echo(socket.get());
  }
  ~EchoProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  EchoProcess(const EchoProcess&) = delete;
  EchoProcess& operator=(const EchoProcess&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }

 private:
  [[noreturn]] static void echo(int socket) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::array<char, 2048> datagram{};
    for (;;) {
      sockaddr_in from{};
      socklen_t size = sizeof(from);
      auto* const raw = reinterpret_cast<sockaddr*>(&from);
      const ssize_t count = ::recvfrom(socket, datagram.data(), datagram.size(), 0, raw, &size);
      if (count >= 0)
        (void)::sendto(socket, datagram.data(), static_cast<std::size_t>(count), 0, raw, size);
    }
  }

  std::uint16_t port_ = 0;
  pid_t process_ = -1;
};

void exchangeOnBareSocket(const sockaddr_in& peer) {
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  std::array<char, 65536> reply;
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&peer), sizeof(peer)) != 0 ||
      ::send(socket.get(), question.data(), question.size(), 0) < 0 ||
      ::recv(socket.get(), reply.data(), reply.size(), 0) !=
          static_cast<ssize_t>(question.size())) {
    fatalError("a bare exchange failed");
  }
}

void measureBare(benchmark::State& state) {
  const EchoProcess peer;
  const sockaddr_in address = loopback(peer.port());
  for (auto iteration : state) {
    for (int count = 0; count < exchanges; ++count) exchangeOnBareSocket(address);
  }
}

class Senders {
 public:
  void exchangeAll(std::uint16_t port) {
    asio::co_spawn(loop_.context(), exchangeInARow(port), asio::use_future).get();
  }

 private:
  asio::awaitable<void> exchangeInARow(std::uint16_t port) {
    for (int count = 0; count < exchanges; ++count) {
      NetworkMessageSender sender(std::string(question),
                                  connections_.connection({Transport::udp, "127.0.0.1", port}),
                                  std::nullopt, queue_, dispatch_.mainQueue());
      const MessageResult result = co_await sender.start();
      if (!result || result->data != question) fatalError("an exchange failed");
    }
  }

  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  SocketConnectionFactory connections_{loop_};
  DispatchQueue& queue_ = dispatch_.serialQueue("exchanges", QualityOfService::userInitiated);
};

void measureSenders(benchmark::State& state) {
  const EchoProcess peer;
  Senders senders;
  for (auto iteration : state) senders.exchangeAll(peer.port());
}

}  // namespace

RatioTable::Table measureExchanges(RatioTable& reporter) {
  addBenchmark("exchanges-bare", measureBare)->MeasureProcessCPUTime();
  addBenchmark("exchanges-sender", measureSenders)->MeasureProcessCPUTime();
  runBenchmarks(reporter);
  return {.title = "10,000 exchanges of datagrams, beside bare sockets",
          .rows = {{"UDP exchanges", "exchanges-sender", "exchanges-bare", aim}}};
}

}  // namespace lanternfold
