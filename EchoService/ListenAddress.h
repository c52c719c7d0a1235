// Where the service listens: an address of this machine and a port.
//
// Made by: the command line (--listen), and by the server with the port that it got. Read by: the
// server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "EchoService/IpAddress.h"

namespace lanternfold {

struct ListenAddress {
  IpAddress address;       ///< all zero for every address of its family
  std::uint16_t port = 0;  ///< 0 for one that the system picks
  friend bool operator==(const ListenAddress&, const ListenAddress&) = default;
};

/// "192.0.2.1:8080" or "[2001:db8::1]:8080", the port 0 to 65535; none for anything else.
[[nodiscard]] std::optional<ListenAddress> parseListenAddress(std::string_view text);

/// In the form that is parsed.
[[nodiscard]] std::string listenAddressText(const ListenAddress& listen);

}  // namespace lanternfold
