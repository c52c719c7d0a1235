#include "PlatformLinux/Netlink/CounterRecords.h"

namespace lanternfold {

ConnectionMetricsMap::Entry namedMetricsOf(const LinkMessage& link) {
  return {link.name, connectionMetricsOf(widestCountersOf(link), link.mtu.value_or(0))};
}

}  // namespace lanternfold
