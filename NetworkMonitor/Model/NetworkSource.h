// What every network source can say of itself. The kinds of sources are a closed set
// (`AnyNetworkSource` in AnyNetworkSource.h), so these are concepts that the records are checked
// against, not base classes: records stay plain values with a defaulted equality.
#pragma once

#include <concepts>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "NetworkMonitor/Model/SourceListItem.h"
#include "Platform/StringTable.h"

namespace lanternfold {

enum class InterfaceType { wlan, ethernet, bluetooth, cellular, unknown };

/// Describes itself as rows of text. `listRepresentation` is empty for every kind; only
/// `compressedListRepresentation` carries rows.
template <typename Record>
concept ListableSource = requires(const Record& record, const StringTable& strings) {
  { record.listRepresentation(strings) } -> std::same_as<SourceList>;
  { record.compressedListRepresentation(strings) } -> std::same_as<SourceList>;
};

/// A part of the machine's network. Counters and category are asked for by functions, the free
/// `metricsOf` and the static `category`, because not every kind keeps them as fields.
template <typename Record>
concept NetworkSource = ListableSource<Record> && requires(const Record& record) {
  { record.active } -> std::convertible_to<bool>;
  { record.displayName } -> std::convertible_to<std::string>;
  { metricsOf(record) } -> std::same_as<const ConnectionMetrics&>;
  { Record::category() } -> std::same_as<NetworkSourceCategory>;
};

template <typename Details>
concept IPConnectionDetails = requires(const Details& details) {
  { details.cidr } -> std::convertible_to<std::string>;
};

}  // namespace lanternfold
