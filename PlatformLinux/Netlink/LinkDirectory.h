// Which link has which name, kept current by link events: what turns counters by index into
// counters by name.
//
// Made by: `StatisticsCounterSource` from a dump of the links and the events after it. Pure.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "PlatformLinux/Netlink/LinkMessage.h"

namespace lanternfold {

class LinkDirectory {
 public:
  struct Slot {
    std::uint32_t index = 0;
    std::uint32_t position = 0;  ///< of the link's name in `names()`
    std::uint64_t mtu = 0;
    friend bool operator==(const Slot&, const Slot&) = default;
  };

  /// Forgets every link.
  void clear();

  /// A link of a dump, or an event: appeared, renamed, changed its MTU, or gone. Messages that do
  /// not describe a link are ignored.
  void apply(const LinkMessage& link);

  /// Every link in ascending order of the indexes. When two links have one name, as in a dump
  /// during which names were exchanged, only the younger one, with the larger index, is listed.
  [[nodiscard]] const std::vector<Slot>& slots();

  /// The names of the listed links, sorted; the same object until a name comes or goes.
  [[nodiscard]] const std::shared_ptr<const ConnectionMetricsMap::Names>& names();

 private:
  struct Known {
    std::string name;
    std::uint64_t mtu = 0;
  };

  void rebuild();

  std::map<std::uint32_t, Known> known_;
  bool isStale_ = true;
  std::vector<Slot> slots_;
  std::shared_ptr<const ConnectionMetricsMap::Names> names_;
};

}  // namespace lanternfold
