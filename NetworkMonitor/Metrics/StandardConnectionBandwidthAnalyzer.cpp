#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"

#include <algorithm>
#include <limits>

namespace lanternfold {
namespace {

/// Truncated; what is beyond the range, as over an interval of microseconds, is its end.
std::uint64_t wholeBytesPerSecond(std::uint64_t bytes, std::chrono::duration<double> interval) {
  constexpr double firstBeyondRange = 18'446'744'073'709'551'616.0;
  const double rate = static_cast<double>(bytes) / interval.count();
  if (rate >= firstBeyondRange) return std::numeric_limits<std::uint64_t>::max();
  return static_cast<std::uint64_t>(rate);
}

}  // namespace

ConnectionBandwidthClass StandardConnectionBandwidthAnalyzer::evaluate(
    const ConnectionMetrics& oldMetrics, const ConnectionMetrics& newMetrics,
    std::chrono::duration<double> interval) const {
  return std::max(classOfDirection(oldMetrics.sentBytes, newMetrics.sentBytes, interval),
                  classOfDirection(oldMetrics.recvBytes, newMetrics.recvBytes, interval));
}

ConnectionBandwidthClass StandardConnectionBandwidthAnalyzer::classOfDirection(
    std::uint64_t oldBytes, std::uint64_t newBytes, std::chrono::duration<double> interval) const {
  const bool isMeasurable = newBytes >= oldBytes && interval.count() > 0;
  if (!isMeasurable) return ConnectionBandwidthClass::idle;
  const std::uint64_t rate = wholeBytesPerSecond(newBytes - oldBytes, interval);
  if (rate < idleTheshold) return ConnectionBandwidthClass::idle;
  if (rate < highSpeedTheshold) return ConnectionBandwidthClass::low;
  if (rate < veryHighSpeedTheshold) return ConnectionBandwidthClass::high;
  return ConnectionBandwidthClass::veryHigh;
}

}  // namespace lanternfold
