// The echo service in a test's own process, on a loop of its own.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "EchoService/EchoServer.h"
#include "EchoService/GeolocationTableJson.h"
#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

/// The service on the loopback, over a port of each family.
class LoopbackEchoService {
 public:
  explicit LoopbackEchoService(const Clock& clock) {
    const auto table = parseGeolocationTable(
        R"({"127.0.0.0/8":{"isp":"Example Net","countryCode":"IT","as":""}})");
    const std::vector listen{parseListenAddress("127.0.0.1:0").value(),
                             parseListenAddress("[::1]:0").value()};
    loop_.runAndWait([&] {
      server_ = std::make_unique<EchoServer>(
          loop_.context(),
          EchoConnectionSettings{.responder = {table.value(), {}}, .limits = {}, .clock = clock});
      if (const auto listening = server_->listen(listen)) listening_ = *listening;
    });
  }
  ~LoopbackEchoService() {
    loop_.runAndWait([this] { server_.reset(); });
  }
  LoopbackEchoService(const LoopbackEchoService&) = delete;
  LoopbackEchoService& operator=(const LoopbackEchoService&) = delete;

  [[nodiscard]] bool isListening() const { return listening_.size() == 2; }
  [[nodiscard]] std::string ipv4Port() const { return std::to_string(listening_.at(0).port); }
  [[nodiscard]] std::string ipv6Port() const { return std::to_string(listening_.at(1).port); }

 private:
  EventLoop loop_{"echo-service"};
  std::unique_ptr<EchoServer> server_;
  std::vector<ListenAddress> listening_;
};

}  // namespace lanternfold
