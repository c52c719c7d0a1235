// The typed record of one interface as the kernel reports it.
//
// Made by: `NetUtils`. Read by: the interface resolver, the hostname tools.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lanternfold {

struct NetInterface {
  struct Address {
    std::string ip;
    std::optional<std::string> netmask;
    std::optional<std::string> gateway;
    std::optional<std::int64_t> prefix;  ///< length in bits
    std::optional<std::string> cidr;     ///< for IPv4 gateway "/" prefix

    friend bool operator==(const Address&, const Address&) = default;
  };

  struct Metrics {
    std::uint8_t type = 0;  ///< interface-type code: 6 Ethernet and Wi-Fi, 24 loopback
    std::uint8_t physical = 0;
    std::uint64_t baudrate = 0;  ///< bit/s, 0 when unknown
    std::uint32_t mtu = 0;       ///< bytes
    std::uint64_t recvBytes = 0;
    std::uint64_t sentBytes = 0;
    std::uint64_t recvPackets = 0;
    std::uint64_t sentPackets = 0;
    std::uint64_t recvErrors = 0;
    std::uint64_t sentErrors = 0;
    std::uint64_t collisions = 0;
    /// Upper-case colon-separated hex pairs; absent when there is none or it is withheld.
    std::optional<std::string> hwAddress;

    friend bool operator==(const Metrics&, const Metrics&) = default;
  };

  std::string name;
  bool isActive = false;
  std::vector<Address> ipv4;  ///< in the kernel's order
  std::vector<Address> ipv6;  ///< empty in practice: no IPv6 gateway is ever reported
  /// Absent when the link layer reported no counters.
  std::optional<Metrics> metrics;

  friend bool operator==(const NetInterface&, const NetInterface&) = default;
};

}  // namespace lanternfold
