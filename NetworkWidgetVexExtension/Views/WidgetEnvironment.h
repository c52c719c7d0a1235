// What views know besides their own fields.
//
// Made by: `makeWidgetEnvironment`, for each entry that is drawn. Read by: every view's `body`.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "Platform/StringTable.h"
#include "WidgetService/EnvironmentValues.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// Of which kinds a widget that shows the network's state has sources. Set by the widget's body.
struct ShownCategoriesEnvironmentKey {
  using Value = NetworkSourceCategory;
  [[nodiscard]] static Value defaultValue() { return NetworkSourceCategory::all(); }
};

/// Names of the interfaces that carry default routes, the best route first. Set by the adapter
/// widget's content.
struct PreferredInterfaceNamesEnvironmentKey {
  using Value = std::vector<std::string>;
  [[nodiscard]] static Value defaultValue() { return {}; }
};

/// The platform's version, which says what widgets can do there. Linux can do all of it.
struct PlatformVersionEnvironmentKey {
  using Value = int;
  [[nodiscard]] static Value defaultValue() { return 14; }
};

/// The first version that has buttons in widgets.
inline constexpr int platformVersionWithButtons = 14;

/// How large a byte meter is drawn.
enum class BytesCircularMeterSize { automatic, small, large };

struct WidgetEnvironment {
  const StringTable& strings;
  WidgetFamily widgetFamily = WidgetFamily::medium;
  NetworkSourceCategory shownCategories = ShownCategoriesEnvironmentKey::defaultValue();
  std::vector<std::string> preferredInterfaceNames = {};
  /// Whether the system draws buttons in widgets; one that does not shows no refresh button.
  bool supportsButtons = true;
  /// Whether the background shows the time of drawing.
  bool showsTimestamp = false;
  /// Whether the rows end above the line of the time of drawing and the refresh button.
  bool keepsBottomFree = false;
  /// The space between a source's rows where they all have room, and where they have less and less;
  /// set by the grid, so that the sources of a widget look alike.
  std::vector<double> rowSpacings = {1};
  /// Set by the grid, too: whether its cards are narrow, so that long names of interfaces are
  /// shortened.
  bool hasNarrowCards = false;
  BytesCircularMeterSize bytesMeterSize = BytesCircularMeterSize::automatic;
  /// The longest number of the meters beside a byte meter, of the size of which its own is set; set
  /// by the row or column of meters.
  std::string numberBesideMeter = {};
  /// How well the Wi-Fi network is received, 0 to 1; absent without one. Set by the source's view.
  std::optional<double> signalStrength = {};
};

/// `strings` outlives the environment.
[[nodiscard]] WidgetEnvironment makeWidgetEnvironment(const EnvironmentValues& values,
                                                      const StringTable& strings,
                                                      WidgetFamily family);

}  // namespace lanternfold
