// What the host's windows need of everything that is no window.
//
// Made by: `HostMachine`. Read by: `runHostProgram`, `HostApplication` and what that makes.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "HostProgram/HostEnvironment.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntentHandling.h"
#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "Platform/Clock.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/LocationManager.h"
#include "Platform/LoginSession.h"
#include "Platform/PathMonitor.h"
#include "Platform/StringTable.h"
#include "PlatformLinux/Defaults/ConfigurationDirectory.h"
#include "PlatformLinux/Location/ConsentAuthority.h"
#include "PlatformLinux/Location/ConsentRecord.h"
#include "Support/UserLanguage.h"
#include "WidgetHost/Desk/WidgetDesk.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

struct HostServices {
  WidgetDesk& desk;  ///< not yet started
  WidgetExtension& extension;
  AdapterConfigurationIntentHandling& adapters;
  InterfaceResolver& interfaces;
  ConnectionMetricsReader& counters;
  BestRouteFinder& bestRoutes;
  const ConfigurationDirectory& configuration;
  LocationConsent& locationConsent;
  ConsentRecord& consentRecord;
  ConsentAuthority* consentAuthority = nullptr;  ///< null outside a sandbox
  std::function<bool()> hasWifi;                 ///< whether the machine has, now; main thread
  PathMonitorFactory& pathMonitors;
  LoginSession& loginSession;
  DesktopAppearance& appearance;
  DispatchQueue& mainQueue;
  const Clock& clock;
  const StringTable& strings;
  DiagnosticLog& log;
  UserLanguage language;
  std::filesystem::path assets;
  std::optional<std::string> forcedTheme;     ///< the user's, instead of the desktop's
  std::vector<GivenVariable> givenVariables;  ///< for programs that are started for the user
};

}  // namespace lanternfold
