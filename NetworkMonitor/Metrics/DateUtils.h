// The current time and the time of the last boot.
//
// Made by: the composition that needs one, of its own clock and kernel; there is no shared
// instance. Read by: the recorder, which compares the two to notice a reboot.
#pragma once

#include <chrono>
#include <optional>

#include "Platform/Clock.h"
#include "Platform/NetworkKernel.h"

namespace lanternfold {

/// Stateless; any thread. `clock` and `kernel` outlive it.
class DateUtils {
 public:
  DateUtils(const Clock& clock, const NetworkKernel& kernel) : clock_(clock), kernel_(kernel) {}

  /// Wall-clock time; may step in either direction.
  [[nodiscard]] std::chrono::system_clock::time_point currentDate() const;

  /// Asked afresh by each call; none when it cannot be determined.
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> lastBootDate() const;

 private:
  const Clock& clock_;
  const NetworkKernel& kernel_;
};

}  // namespace lanternfold
