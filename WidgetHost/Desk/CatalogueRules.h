// What the extension's catalogue allows on a desktop.
//
// Pure functions. Used by: the desk, before it does what a user asks for, and the windows.
#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "WidgetHost/Store/PlacedWidget.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// Null when there is none of that kind.
[[nodiscard]] const WidgetDescription* descriptionOf(std::span<const WidgetDescription> catalogue,
                                                     std::string_view kind);

/// What the user knows widgets of that kind by; `kind` itself while that is not known.
[[nodiscard]] std::string displayNameOf(std::span<const WidgetDescription> catalogue,
                                        const std::string& kind);

/// Whether the extension has the widget's kind, in its family.
[[nodiscard]] bool isOffered(std::span<const WidgetDescription> catalogue,
                             const PlacedWidget& widget);

/// The family that a new widget gets: `wanted`, else the largest. The error is one sentence without
/// its full stop; here and below.
[[nodiscard]] std::expected<WidgetFamily, std::string> familyFor(
    std::span<const WidgetDescription> catalogue, const std::string& kind,
    std::optional<WidgetFamily> wanted);

/// Whether the texts are short enough to be kept and handed on.
[[nodiscard]] std::expected<void, std::string> checkConfiguration(
    const ConfigurationParameters& configuration);

/// `position` within the bounds of what is remembered; the monitor of a name that is too long is
/// any.
[[nodiscard]] MonitorPosition boundedPosition(MonitorPosition position);

}  // namespace lanternfold
