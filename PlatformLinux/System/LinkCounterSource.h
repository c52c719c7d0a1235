// The second way to the counters: those that come with a full dump of the links.
//
// Made by: the Linux composition. Read by: `LinuxConnectionMetricsReader`, on kernels before 4.7.
#pragma once

#include <expected>
#include <optional>

#include "PlatformLinux/System/CounterSource.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// Costs about nine times as much as the fast way, since the kernel describes each link whole.
class LinkCounterSource final : public CounterSource {
 public:
  [[nodiscard]] std::expected<ConnectionMetricsMap, NetworkKernelError> read() override;

 private:
  std::optional<NetlinkSocket> socket_;
};

}  // namespace lanternfold
