// What views know besides their own fields.
//
// Made by: the composition root of whoever asks for an entry's view. Read by: every view's `body`.
#pragma once

#include <string>
#include <vector>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "Platform/StringTable.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

struct WidgetEnvironment {
  const StringTable& strings;
  WidgetFamily widgetFamily = WidgetFamily::medium;
  /// Of which kinds a widget that shows the network's state has sources.
  NetworkSourceCategory shownCategories = NetworkSourceCategory::all();
  /// Names of the interfaces that carry default routes, the best route first.
  std::vector<std::string> preferredInterfaceNames = {};
  /// Whether the system draws buttons in widgets; one that does not shows no refresh button.
  bool supportsButtons = true;
};

}  // namespace lanternfold
