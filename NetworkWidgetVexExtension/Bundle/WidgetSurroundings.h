// The world around the widgets: everything that their bodies hand on to providers and views.
//
// Made by: the composition root of whoever serves the widgets. Read by: each widget's body.
#pragma once

#include "NetworkWidgetVexExtension/Providers/NetworkStateMonitorFactory.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/LocationManager.h"
#include "Platform/PathMonitor.h"
#include "Platform/StringTable.h"
#include "WidgetService/EnvironmentValues.h"

namespace lanternfold {

/// The references outlive the widgets and their requests.
struct WidgetSurroundings {
  const Clock& clock;
  const StringTable& strings;
  const StringTable& mainBundleStrings;  ///< another domain of the same catalogue
  DispatchQueue& mainQueue;
  PathMonitorFactory& pathMonitors;
  LocationConsent& locationConsent;
  NetworkStateMonitorFactory makeMonitor;
  EnvironmentValues environment = {};
};

}  // namespace lanternfold
