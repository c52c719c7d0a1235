// The results that an extension answers with, checked: what `ServiceAnswer` writes, read back.
//
// Made by: these functions, of what `parseExtensionMessage` has found. Read by: the host's client
// of the extension. Written down in Docs/formats/widget-service.md.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <vector>

#include "ViewTree/ArchiveValue.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// What a host takes at most.
inline constexpr std::size_t mostReceivedWidgets = 64;
inline constexpr std::size_t mostReceivedEntries = 64;
inline constexpr std::size_t longestWidgetText = 1024;  ///< bytes of a name or a description

/// The error is a clause that names the member, such as "widgets[1].kind: It is missing."; fit to
/// show. Members that are not known are ignored. Pure; any thread.
///
/// Kinds differ from each other, and are fit to show, as are all texts. Families that are not known
/// are passed over, and so is a widget that has no other.
[[nodiscard]] std::expected<std::vector<WidgetDescription>, std::string> receivedWidgets(
    const ArchiveValue& result);
[[nodiscard]] std::expected<ViewEntry, std::string> receivedEntry(const ArchiveValue& result);
/// In the order in which they came, whatever their dates are.
[[nodiscard]] std::expected<Timeline<ViewEntry>, std::string> receivedTimeline(
    const ArchiveValue& result);
[[nodiscard]] std::expected<void, std::string> receivedNothing(const ArchiveValue& result);

}  // namespace lanternfold
