#include "NetworkMonitor/Metrics/AdjustedMetrics.h"

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "Support/CheckedArithmetic.h"

namespace lanternfold {
namespace {

constexpr std::uint64_t largestCounter = 4'294'967'295;

std::uint64_t carriedForward(std::uint64_t current, std::uint64_t previousOriginal,
                             std::uint64_t previousAdjusted) {
  if (current >= previousOriginal) {
    return checkedAdd(previousAdjusted, current - previousOriginal);
  }
  if (previousOriginal > largestCounter) {
    fatalError("a counter that wrapped at 32 bits was stored with more of them");
  }
  return checkedAdd(checkedAdd(previousAdjusted, current), largestCounter - previousOriginal);
}

}  // namespace

ConnectionMetrics carriedForward(const ConnectionMetrics& current,
                                 const std::optional<ConnectionMetrics>& previousOriginal,
                                 const std::optional<ConnectionMetrics>& previousAdjusted) {
  const ConnectionMetrics original = previousOriginal.value_or(ConnectionMetrics::empty());
  const ConnectionMetrics base = previousAdjusted.value_or(ConnectionMetrics::empty());
  ConnectionMetrics adjusted;
  for (const auto& field : connectionMetricsFields) {
    if (field.member == &ConnectionMetrics::mtu) continue;
    adjusted.*field.member =
        carriedForward(current.*field.member, original.*field.member, base.*field.member);
  }
  adjusted.mtu = current.mtu;
  return adjusted;
}

}  // namespace lanternfold
