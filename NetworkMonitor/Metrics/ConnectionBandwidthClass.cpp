#include "NetworkMonitor/Metrics/ConnectionBandwidthClass.h"

#include "Support/FatalError.h"

namespace lanternfold {

std::optional<ConnectionBandwidthClass> connectionBandwidthClass(std::int64_t rawValue) {
  using enum ConnectionBandwidthClass;
  for (const ConnectionBandwidthClass known : {idle, low, high, veryHigh}) {
    if (static_cast<std::int64_t>(known) == rawValue) return known;
  }
  return std::nullopt;
}

std::string_view nameOf(ConnectionBandwidthClass bandwidthClass) {
  switch (bandwidthClass) {
    case ConnectionBandwidthClass::idle:
      return "idle";
    case ConnectionBandwidthClass::low:
      return "low";
    case ConnectionBandwidthClass::high:
      return "high";
    case ConnectionBandwidthClass::veryHigh:
      return "veryHigh";
  }
  fatalError("a bandwidth class is none of the known ones");
}

}  // namespace lanternfold
