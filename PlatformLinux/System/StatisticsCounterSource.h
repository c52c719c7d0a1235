// The fast way to the counters: one RTM_GETSTATS dump of nothing but 64-bit counters.
//
// Made by: the Linux composition. Read by: `LinuxConnectionMetricsReader`. Linux 4.7 and later.
#pragma once

#include <expected>
#include <optional>
#include <vector>

#include "PlatformLinux/Netlink/LinkDirectory.h"
#include "PlatformLinux/Netlink/StatisticsMessage.h"
#include "PlatformLinux/System/CounterSource.h"
#include "PlatformLinux/System/NetlinkEventSocket.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// The dump tells indexes, no names: those come from one dump of the links at the first reading and
/// from link events afterwards, which wait on a socket of their own and are taken in after each
/// dump. So a link that was renamed meanwhile has its final name, and one that is gone is left out.
/// When events were lost, or the counters speak of a link that no event told of, the links are
/// dumped anew.
///
/// Both sockets belong to the network namespace of the thread that reads first.
class StatisticsCounterSource final : public CounterSource {
 public:
  [[nodiscard]] std::expected<ConnectionMetricsMap, NetworkKernelError> read() override;

 private:
  struct Sockets {
    NetlinkSocket dumps;
    NetlinkEventSocket events;
  };

  [[nodiscard]] std::expected<ConnectionMetricsMap, NetworkKernelError> readWithSockets();
  [[nodiscard]] std::expected<void, NetworkKernelError> open();
  [[nodiscard]] std::expected<void, NetworkKernelError> dumpStatistics();
  [[nodiscard]] std::expected<void, NetworkKernelError> dumpLinks();
  [[nodiscard]] std::expected<void, NetworkKernelError> takeInEvents();

  std::optional<Sockets> sockets_;
  LinkDirectory directory_;
  bool directoryIsComplete_ = false;
  // Whether the links that even a fresh dump gave no usable name are still the only unknown ones.
  bool unknownLinksAreNameless_ = false;
  std::vector<StatisticsMessage> statistics_;  // of the last dump; kept for its room
};

}  // namespace lanternfold
