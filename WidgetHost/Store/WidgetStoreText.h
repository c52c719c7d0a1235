// The text of the file that remembers the widgets of a desktop.
//
// Pure: any thread, nothing thrown for bad input. Used by: `WidgetStore`. Written down in
// Docs/formats/widget-store.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WidgetHost/Store/PlacedWidget.h"
#include "WidgetHost/Store/WidgetIds.h"

namespace lanternfold {

inline constexpr std::size_t longestWidgetStoreBytes = std::size_t{1024} * 1024;
inline constexpr std::size_t mostPlacedWidgets = 200;
/// Points from a monitor's corner, either way.
inline constexpr int furthestPosition = 100'000;
inline constexpr std::size_t longestWidgetIdBytes = 64;
inline constexpr std::size_t longestMonitorName = 256;
inline constexpr std::int64_t widgetStoreVersion = 1;

/// An element of the file's list.
struct StoredWidget {
  std::optional<PlacedWidget> placed;  ///< none of what is not understood
  std::string original;  ///< JSON, as it was read; empty for one that was never in a file
  friend bool operator==(const StoredWidget&, const StoredWidget&) = default;
};

struct StoredWidgets {
  std::vector<StoredWidget> widgets;
  std::string otherMembers;  ///< a JSON object of the file's other members; empty for none
  /// All that stand in the file, and those given since.
  WidgetIds ids;
  bool isOfLaterVersion = false;
  /// Of a later version the list of widgets may be elsewhere, or of another form.
  bool hasList = true;
  /// Clauses that say what is not shown, or was changed.
  std::vector<std::string> remarks;
  friend bool operator==(const StoredWidgets&, const StoredWidgets&) = default;
};

/// The error is a clause that says why the whole text makes no sense. Ids are unique among those
/// that are understood: of two alike the second one gets another id.
[[nodiscard]] std::expected<StoredWidgets, std::string> readWidgetStore(std::string_view text);

/// What was read is written as it was, but for what has changed since: members that nobody knows
/// stay, within a widget and its configuration too. The text may be longer than a reader takes.
[[nodiscard]] std::string widgetStoreText(const StoredWidgets& stored);

}  // namespace lanternfold
