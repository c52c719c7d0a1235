// The traffic counters of one network interface: the one counter record of the system.
//
// Made by: the counter readers and the recorder. Read by: every network source and the
// storages, in whose files its JSON form stands.
#pragma once

#include <cstdint>
#include <optional>

namespace lanternfold {

struct ConnectionMetrics {
  std::uint64_t sentBytes = 0;
  std::uint64_t recvBytes = 0;
  std::uint64_t sentError = 0;  ///< packets that could not be sent
  std::uint64_t recvError = 0;  ///< packets received damaged
  std::uint64_t sentPacket = 0;
  std::uint64_t recvPacket = 0;
  std::uint64_t collisions = 0;
  std::uint64_t mtu = 0;  ///< bytes; a property of the link, not a counter

  [[nodiscard]] static ConnectionMetrics empty();
  /// Seven zero counters and the given MTU.
  [[nodiscard]] static ConnectionMetrics initial(std::uint64_t mtu);

  // Sums stop the program beyond 2^64 - 1.
  [[nodiscard]] std::uint64_t totalBytes() const;
  [[nodiscard]] std::uint64_t totalError() const;
  [[nodiscard]] std::uint64_t totalPacket() const;

  /// Adds the seven counters; the result's MTU is the larger of the two, not a sum.
  ConnectionMetrics& operator+=(const ConnectionMetrics& other);
  friend ConnectionMetrics operator+(ConnectionMetrics left, const ConnectionMetrics& right);
  friend bool operator==(const ConnectionMetrics&, const ConnectionMetrics&) = default;
};

/// Tells raw counters from those carried forward across 32-bit wrap-arounds.
enum class ConnectionMetricsType : std::int64_t {
  original = 0,  ///< exactly as last read from the operating system
  adjusted = 1,  ///< carried forward by the recorder
};

/// The case with this raw value, or none.
[[nodiscard]] std::optional<ConnectionMetricsType> connectionMetricsType(std::int64_t rawValue);

}  // namespace lanternfold
