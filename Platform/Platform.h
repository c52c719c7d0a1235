// The seams of one program, gathered: what a composition root hands down instead of a dozen
// arguments.
//
// Made by: composition roots and test fixtures. Read by: whatever wires the library's pieces.
#pragma once

#include "Platform/Clock.h"
#include "Platform/Connection.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/FileSystem.h"
#include "Platform/GroupContainer.h"
#include "Platform/HostLookup.h"
#include "Platform/InterfaceNaming.h"
#include "Platform/LocationManager.h"
#include "Platform/NetworkConfiguration.h"
#include "Platform/NetworkKernel.h"
#include "Platform/PathMonitor.h"
#include "Platform/ResolverConfiguration.h"
#include "Platform/StringTable.h"
#include "Platform/UrlSession.h"
#include "Platform/UserDefaults.h"
#include "Platform/WifiClient.h"

namespace lanternfold {

/// References only; whoever made the seams outlives every holder of a copy.
struct Platform {
  const NetworkKernel& kernel;
  const ResolverConfiguration& resolverConfiguration;
  const NetworkConfiguration& networkConfiguration;
  const InterfaceNaming& interfaceNaming;
  PathMonitorFactory& pathMonitors;
  Dispatch& dispatch;
  const Clock& clock;
  const StringTable& strings;
  DiagnosticLog& diagnostics;
  FileSystem& fileSystem;
  UserDefaultsSuites& userDefaults;
  GroupContainer& groupContainer;
  UrlSessions& urlSessions;
  LocationConsent& locationConsent;
  const WifiClient& wifiClient;
  const HostLookup& hostLookup;
  ConnectionFactory& connections;
};

}  // namespace lanternfold
