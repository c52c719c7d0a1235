#include "PlatformLinux/Netlink/StatisticsMapping.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "PlatformLinux/Netlink/CounterRecords.h"

namespace lanternfold {

namespace {

using Slot = LinkDirectory::Slot;

bool agree(std::span<const StatisticsMessage> statistics, std::span<const Slot> slots) {
  return std::ranges::equal(statistics, slots, {}, &StatisticsMessage::interfaceIndex,
                            &Slot::index);
}

const Slot* slotOf(std::span<const Slot> slots, std::uint32_t index) {
  const auto found = std::ranges::lower_bound(slots, index, {}, &Slot::index);
  return found != slots.end() && found->index == index ? &*found : nullptr;
}

// The map of only those names for which `isPresent` holds.
ConnectionMetricsMap subset(const ConnectionMetricsMap::Names& names,
                            const std::vector<ConnectionMetrics>& values,
                            const std::vector<bool>& isPresent) {
  auto keptNames = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> keptValues;
  for (std::size_t position = 0; position < names.size(); ++position) {
    if (!isPresent[position]) continue;
    keptNames->push_back(names[position]);
    keptValues.push_back(values[position]);
  }
  return {std::move(keptNames), std::move(keptValues)};
}

StatisticsMapping mapBySearch(std::span<const StatisticsMessage> statistics,
                              LinkDirectory& directory) {
  const std::vector<Slot>& slots = directory.slots();
  StatisticsMapping mapping;
  std::vector<ConnectionMetrics> values(slots.size());
  std::vector<bool> isPresent(slots.size());
  for (const StatisticsMessage& message : statistics) {
    const Slot* slot = slotOf(slots, message.interfaceIndex);
    mapping.hasUnknownLinks = mapping.hasUnknownLinks || slot == nullptr;
    if (slot == nullptr) continue;
    values[slot->position] = connectionMetricsOf(message.counters, slot->mtu);
    isPresent[slot->position] = true;
  }
  mapping.metrics = subset(*directory.names(), values, isPresent);
  return mapping;
}

}  // namespace

StatisticsMapping mapStatistics(std::span<const StatisticsMessage> statistics,
                                LinkDirectory& directory) {
  const std::vector<Slot>& slots = directory.slots();
  if (!agree(statistics, slots)) return mapBySearch(statistics, directory);
  std::vector<ConnectionMetrics> values(slots.size());
  for (std::size_t position = 0; position < slots.size(); ++position) {
    const Slot& slot = slots[position];
    values[slot.position] = connectionMetricsOf(statistics[position].counters, slot.mtu);
  }
  return {ConnectionMetricsMap(directory.names(), std::move(values)), false};
}

}  // namespace lanternfold
