// The last way to the counters: the text of /proc/net/dev, where netlink is refused.
//
// Made by: the Linux composition. Read by: `LinuxConnectionMetricsReader`.
#pragma once

#include <expected>

#include "PlatformLinux/System/CounterSource.h"

namespace lanternfold {

/// The text has no MTU: it is asked for by name, and 0 where that is refused too. Errors: refused
/// (the file cannot be read), malformed.
class ProcNetDevCounterSource final : public CounterSource {
 public:
  [[nodiscard]] std::expected<ConnectionMetricsMap, NetworkKernelError> read() override;
};

}  // namespace lanternfold
