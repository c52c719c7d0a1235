// Unsigned sums that stop the program instead of wrapping.
//
// A counter that silently wraps would show a user a believable wrong number; a stop cannot be
// believed. Used by every sum of traffic counters.
#pragma once

#include <cstdint>

#include "Support/FatalError.h"

namespace lanternfold {

/// `left + right`; stops the program when the sum exceeds 2^64 - 1.
[[nodiscard]] inline std::uint64_t checkedAdd(std::uint64_t left, std::uint64_t right) {
  std::uint64_t sum = 0;
  if (__builtin_add_overflow(left, right, &sum)) {
    fatalError("a sum of counters exceeds the range of an unsigned 64-bit integer");
  }
  return sum;
}

}  // namespace lanternfold
