// The listening side of the service: takes connections in, as many at once as it may.
//
// Made by: `echo-service`. Hangs on an event loop of its own.
#pragma once

#include <expected>
#include <memory>
#include <span>
#include <system_error>
#include <vector>

#include "EchoService/EchoConnectionSettings.h"
#include "EchoService/ListenAddress.h"

namespace asio {
class io_context;
}

namespace lanternfold {

struct EchoListenError {
  ListenAddress where;
  std::error_code error;
};

/// All on the loop's thread, or before the loop runs; closed before the loop ends.
class EchoServer {
 public:
  EchoServer(asio::io_context& loop, EchoConnectionSettings settings);
  /// Closes every listener and every connection at once.
  ~EchoServer();
  EchoServer(const EchoServer&) = delete;
  EchoServer& operator=(const EchoServer&) = delete;

  /// Listens at all of them, an IPv6 address for IPv6 clients only; where it does, in their order
  /// and with the ports that the system has picked. Upon an error it listens nowhere.
  [[nodiscard]] std::expected<std::vector<ListenAddress>, EchoListenError> listen(
      std::span<const ListenAddress> addresses);

 private:
  class Reception;
  std::shared_ptr<Reception> reception_;
};

}  // namespace lanternfold
