#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"

namespace lanternfold {

WidgetEnvironment makeWidgetEnvironment(const EnvironmentValues& values, const StringTable& strings,
                                        WidgetFamily family) {
  return {
      .strings = strings,
      .widgetFamily = family,
      .shownCategories = values.get<ShownCategoriesEnvironmentKey>(),
      .preferredInterfaceNames = values.get<PreferredInterfaceNamesEnvironmentKey>(),
      .supportsButtons = values.get<PlatformVersionEnvironmentKey>() >= platformVersionWithButtons};
}

}  // namespace lanternfold
