#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

#include <algorithm>

#include "Support/CheckedArithmetic.h"

namespace lanternfold {

ConnectionMetrics ConnectionMetrics::empty() { return {}; }

ConnectionMetrics ConnectionMetrics::initial(std::uint64_t mtu) { return {.mtu = mtu}; }

std::uint64_t ConnectionMetrics::totalBytes() const { return checkedAdd(sentBytes, recvBytes); }

std::uint64_t ConnectionMetrics::totalError() const { return checkedAdd(sentError, recvError); }

std::uint64_t ConnectionMetrics::totalPacket() const { return checkedAdd(sentPacket, recvPacket); }

ConnectionMetrics& ConnectionMetrics::operator+=(const ConnectionMetrics& other) {
  // Built whole before it is stored: the record stays as it was until every sum is known to fit.
  *this = {.sentBytes = checkedAdd(sentBytes, other.sentBytes),
           .recvBytes = checkedAdd(recvBytes, other.recvBytes),
           .sentError = checkedAdd(sentError, other.sentError),
           .recvError = checkedAdd(recvError, other.recvError),
           .sentPacket = checkedAdd(sentPacket, other.sentPacket),
           .recvPacket = checkedAdd(recvPacket, other.recvPacket),
           .collisions = checkedAdd(collisions, other.collisions),
           .mtu = std::max(mtu, other.mtu)};
  return *this;
}

ConnectionMetrics operator+(ConnectionMetrics left, const ConnectionMetrics& right) {
  left += right;
  return left;
}

std::optional<ConnectionMetricsType> connectionMetricsType(std::int64_t rawValue) {
  switch (rawValue) {
    case 0:
      return ConnectionMetricsType::original;
    case 1:
      return ConnectionMetricsType::adjusted;
    default:
      return std::nullopt;
  }
}

}  // namespace lanternfold
