// Which adapter the adapter widget shows.
//
// Pure functions. Used by: `NetworkAdapterWidgetEntryView`, and whoever offers adapters to choose
// from.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"

namespace lanternfold {

/// The state holds no adapter to choose from.
struct NoAdapter {
  friend bool operator==(const NoAdapter&, const NoAdapter&) = default;
};

/// The adapter that the user chose is not in the state.
struct MissingAdapter {
  std::string name;
  friend bool operator==(const MissingAdapter&, const MissingAdapter&) = default;
};

using AdapterChoice = std::variant<NoAdapter, MissingAdapter, BasicInterface>;

/// The place of a kind among adapters that are equal otherwise: wired before Wi-Fi before the rest.
[[nodiscard]] int adapterKindRank(InterfaceType type);

/// The name of the interface that the user chose; none when the choice is left to the widget.
[[nodiscard]] std::optional<std::string> chosenAdapterName(
    const AdapterConfigurationIntent& configuration);

/// The adapter of the configuration, never another one in its place; without one there, the best of
/// `interfaces`.
[[nodiscard]] AdapterChoice chooseAdapter(const AdapterConfigurationIntent& configuration,
                                          const std::vector<BasicInterface>& interfaces,
                                          const std::vector<std::string>& preferredNames);

/// The first of `preferredNames` that is there, else an active interface with an IPv4 address, else
/// an active one, else any; among equals wired before Wi-Fi before the rest, then by name. Null
/// when there is none.
[[nodiscard]] const BasicInterface* bestAdapter(const std::vector<BasicInterface>& interfaces,
                                                const std::vector<std::string>& preferredNames);

}  // namespace lanternfold
