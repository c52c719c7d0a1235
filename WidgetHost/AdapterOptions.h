// The adapters that a user may choose from, as a list shows them.
//
// Pure functions. Used by: `AdapterIntentHandler`.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// The adapter's human name with the interface's, which no other has, so that two of a kind can be
/// told apart: "USB network adapter (eth1)".
[[nodiscard]] NetworkAdapter adapterOption(const BasicInterface& interface);

/// The choice that is left to the widget; its display says which adapter that is now, if any.
[[nodiscard]] NetworkAdapter automaticOption(const BasicInterface* now, const StringTable& strings);

/// The automatic choice, then every interface: wired before Wi-Fi before the rest, then by name.
/// `bestRoute` is the interface of the best default route.
[[nodiscard]] std::vector<NetworkAdapter> adapterOptions(
    const std::vector<BasicInterface>& interfaces, const std::optional<std::string>& bestRoute,
    const StringTable& strings);

}  // namespace lanternfold
