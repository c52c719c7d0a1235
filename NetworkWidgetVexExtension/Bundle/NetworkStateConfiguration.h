// What the widgets that show the network's state have in common.
#pragma once

#include <optional>
#include <string>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/WidgetConfiguration.h"

namespace lanternfold {

/// The configuration of such a widget, with a provider and an observer of the consent of its own.
/// It resolves and shows the sources of `categoryFilter`; none for all.
[[nodiscard]] WidgetConfiguration networkStateConfiguration(
    std::string kind, std::optional<NetworkSourceCategory> categoryFilter,
    const WidgetSurroundings& surroundings);

}  // namespace lanternfold
