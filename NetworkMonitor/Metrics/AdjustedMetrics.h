// The arithmetic that carries 32-bit counters forward across their wrap-arounds.
//
// Read by: the recorder's sampling step. Pure.
#pragma once

#include <optional>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// The adjusted counters after a reading `current` of 32-bit counters, from those of the sample
/// before: `previousOriginal` as it was read, `previousAdjusted` as it was carried forward. What is
/// absent counts as zero. The MTU is the current one.
///
/// A counter that is smaller than before has wrapped, once. A wrap adds 4294967295, one less than
/// 2^32: the stored counters of every version are carried forward so. Stops the program when a
/// counter that wrapped was beyond 32 bits before, and when an adjusted one exceeds 2^64 - 1.
[[nodiscard]] ConnectionMetrics carriedForward(
    const ConnectionMetrics& current, const std::optional<ConnectionMetrics>& previousOriginal,
    const std::optional<ConnectionMetrics>& previousAdjusted);

}  // namespace lanternfold
