#include "Wiring/LinuxMachine.h"

#include <cstdio>
#include <string>

#include "PlatformLinux/Bus/BusAddresses.h"
#include "PlatformLinux/Connection/SocketConnection.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/LinuxGroupContainer.h"
#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/Desktop/BusWidgetControl.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/GettextStringTable.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxHostLookup.h"
#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "PlatformLinux/System/LinuxWifiClient.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "PlatformLinux/System/SystemClock.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "PlatformLinux/Url/CurlUrlSessions.h"
#include "Wiring/DataFolders.h"
#include "Wiring/DistinctDiagnosticLog.h"
#include "Wiring/FileDescriptorLimit.h"
#include "Wiring/FileSoleRecorder.h"
#include "Wiring/LanguageChoice.h"
#include "Wiring/LinuxMainLoop.h"
#include "Wiring/LocationSide.h"
#include "Wiring/ProcessHostStarter.h"
#include "Wiring/ProgramName.h"
#include "Wiring/WifiConsent.h"

namespace lanternfold {

/// More than any command has open at once, which is about twenty while it asks the public services.
/// Without them a command would fail somewhere on its way, and blame the file that it was about to
/// open.
constexpr int descriptorsOfACommand = 32;

// In the order of construction: what listens to the event loop goes before the loop does, and the
// queues, which finish the works that are running, before what those use.
struct LinuxMachine::Parts {
  explicit Parts(const MachineOptions& options)
      : language(options.texts == TextLanguage::users ? chooseUserLanguage() : UserLanguage{}),
        diagnosticStream(options.diagnostics == DiagnosticsTarget::standardError ? stderr : stdout,
                         options.whenDiagnosticsStall == WhenDiagnosticsStall::loseLine
                             ? StreamDiagnosticLog::WhenFull::loseLine
                             : StreamDiagnosticLog::WhenFull::wait),
        diagnostics(options.repeatedDiagnostics == RepeatedDiagnostics::dropped
                        ? static_cast<DiagnosticLog&>(distinctDiagnostics)
                        : diagnosticStream),
        dataDirectory(options.dataFolder),
        urlSessions(eventLoop, dispatch,
                    {.userAgent = std::string(programName) + "/" LANTERNFOLD_VERSION,
                     .certificateAuthoritiesFile = options.certificateAuthoritiesFile,
                     .proxies = proxyEnvironmentOfProcess()}) {}

  /// Before anything starts a thread.
  UserLanguage language;
  StreamDiagnosticLog diagnosticStream;
  DistinctDiagnosticLog distinctDiagnostics{diagnosticStream};
  DiagnosticLog& diagnostics;
  SystemClock clock;
  GettextStringTable strings{catalogueDomain(), translationsFolder(), language};
  LinuxNetworkKernel kernel;
  PosixFileSystem fileSystem;
  DataDirectory dataDirectory;
  LinuxGroupContainer groupContainer{dataDirectory};
  SqliteUserDefaultsSuites userDefaults{dataDirectory, diagnostics};
  FileSoleRecorder soleRecorder;
  EventLoop eventLoop;
  AsioDispatch dispatch{eventLoop};
  LinuxMainLoop mainLoop{eventLoop, dispatch};
  LinuxResolverConfiguration resolverConfiguration;
  UdevHardwareDatabase hardwareDatabase;
  LinuxNetworkConfiguration networkConfiguration{hardwareDatabase};
  LinuxInterfaceNaming interfaceNaming;
  LinuxPathMonitorFactory pathMonitors{eventLoop};
  CurlUrlSessions urlSessions;
  LocationSide location{{.directory = dataDirectory,
                         .files = fileSystem,
                         .loop = eventLoop,
                         .dispatch = dispatch,
                         .log = diagnostics}};
  RelayedConsent consent{location.consent()};
  LinuxWifiClient wifiClient{[this] { return mayTellWifiNames(consent); }};
  LinuxHostLookup hostLookup;
  BusWidgetControl widgetControl{sessionBusAddress()};
  ProcessHostStarter hostStarter{programFolder()};
  SocketConnectionFactory connections{eventLoop};
  Machine machine{.platform = {.kernel = kernel,
                               .resolverConfiguration = resolverConfiguration,
                               .networkConfiguration = networkConfiguration,
                               .interfaceNaming = interfaceNaming,
                               .pathMonitors = pathMonitors,
                               .dispatch = dispatch,
                               .clock = clock,
                               .strings = strings,
                               .diagnostics = diagnostics,
                               .fileSystem = fileSystem,
                               .userDefaults = userDefaults,
                               .groupContainer = groupContainer,
                               .urlSessions = urlSessions,
                               .locationConsent = consent,
                               .wifiClient = wifiClient,
                               .hostLookup = hostLookup,
                               .connections = connections},
                  .mainBundleStrings = strings,
                  .language = language,
                  .metricsReader = std::make_shared<LinuxConnectionMetricsReader>(),
                  .soleRecorder = soleRecorder,
                  .readWifi = [this] { return wifiClient.report(); },
                  .consentRecord = location.record(),
                  .consentAuthority = location.authority(),
                  .mainLoop = mainLoop,
                  .widgetControl = widgetControl,
                  .hostStarter = hostStarter,
                  .assets = assetsFolder()};
};

LinuxMachine::LinuxMachine(const MachineOptions& options) {
  requireFreeDescriptors(descriptorsOfACommand);
  parts_ = std::make_unique<Parts>(options);
}

LinuxMachine::~LinuxMachine() = default;

const Machine& LinuxMachine::machine() const { return parts_->machine; }

RelayedConsent& LinuxMachine::consent() { return parts_->consent; }

EventLoop& LinuxMachine::eventLoop() { return parts_->eventLoop; }

}  // namespace lanternfold
