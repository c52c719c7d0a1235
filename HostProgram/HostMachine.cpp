#include "HostProgram/HostMachine.h"

#include <string>
#include <utility>

#include "HostProgram/HostEnvironment.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"
#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "PlatformLinux/Bus/BusAddresses.h"
#include "PlatformLinux/Defaults/ConfigurationDirectory.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Desktop/LogindSession.h"
#include "PlatformLinux/Desktop/PortalAppearance.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/GettextStringTable.h"
#include "PlatformLinux/System/GlibMainRunner.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "PlatformLinux/System/SocketChildProgram.h"
#include "PlatformLinux/System/SystemClock.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "PlatformLinux/System/WirelessRoles.h"
#include "WidgetHost/AdapterIntentHandler.h"
#include "WidgetHost/Service/ExtensionClient.h"
#include "WidgetHost/Store/WidgetStore.h"
#include "Wiring/DataFolders.h"
#include "Wiring/LanguageChoice.h"
#include "Wiring/LocationSide.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

WidgetStore::Place storePlace(const ConfigurationDirectory& directory) {
  const auto& folder = directory.location();
  return {.file = folder ? *folder / "widgets.json" : std::filesystem::path(),
          .makeFolder = [&directory]() -> std::expected<void, std::string> {
            if (auto made = directory.folder(); !made) return std::unexpected(made.error());
            return {};
          }};
}

}  // namespace

/// In the order of construction: what listens to the event loop goes before the loop does, and the
/// queues, which finish the works that are running, before what those use.
struct HostMachine::Parts {
  Parts(const HostChoice& choice, const UserLanguage& spoken, DiagnosticLog& diagnostics,
        HostMessages& messages, std::vector<GivenVariable> givenVariables)
      : log(diagnostics),
        strings(catalogueDomain(), translationsFolder(), spoken),
        dataDirectory(choice.dataFolder),
        launcher(programFolder() / extensionProgramName, argumentsOf(choice.common), eventLoop,
                 mainQueue, [&messages] { return messages.ofNextProgram(); }),
        desk({.extension = extension,
              .store = store,
              .mainQueue = mainQueue,
              .clock = clock,
              .strings = strings,
              .log = log},
             {.refreshInterval = choice.refreshInterval,
              .knownWidgets = widgetKinds(),
              .dates = {.locale = spoken.dateLocale, .timeZone = {}}}),
        services{.desk = desk,
                 .extension = extension,
                 .adapters = adapters,
                 .interfaces = *interfaces,
                 .counters = *counters,
                 .bestRoutes = *bestRoutes,
                 .configuration = configuration,
                 .locationConsent = location.consent(),
                 .consentRecord = location.record(),
                 .consentAuthority = location.authority(),
                 .hasWifi = [] { return WirelessRoles().hasNetworks(); },
                 .pathMonitors = pathMonitors,
                 .loginSession = loginSession,
                 .appearance = appearance,
                 .mainQueue = mainQueue,
                 .clock = clock,
                 .strings = strings,
                 .log = log,
                 .language = spoken,
                 .assets = assetsFolder(),
                 .forcedTheme = forcedThemeOfProcess(),
                 .givenVariables = std::move(givenVariables)} {}

  DiagnosticLog& log;
  SystemClock clock;
  GettextStringTable strings;
  PosixFileSystem files;
  DataDirectory dataDirectory;
  ConfigurationDirectory configuration;
  EventLoop eventLoop;
  AsioDispatch dispatch{eventLoop, std::make_unique<GlibMainRunner>()};
  DispatchQueue& mainQueue = dispatch.mainQueue();
  LinuxPathMonitorFactory pathMonitors{eventLoop};
  LocationSide location{{.directory = dataDirectory,
                         .files = files,
                         .loop = eventLoop,
                         .dispatch = dispatch,
                         .log = log}};
  LogindSession loginSession{
      {.busAddress = systemBusAddress(), .sessionId = loginSessionOfProcess()}, mainQueue};
  PortalAppearance appearance{sessionBusAddress(), mainQueue};
  // Which adapters there are.
  LinuxNetworkKernel kernel;
  LinuxResolverConfiguration resolverConfiguration;
  LinuxInterfaceNaming interfaceNaming;
  UdevHardwareDatabase hardwareDatabase;
  LinuxNetworkConfiguration networkConfiguration{hardwareDatabase};
  std::shared_ptr<LinuxConnectionMetricsReader> counters =
      std::make_shared<LinuxConnectionMetricsReader>();
  std::shared_ptr<PosixInterfaceResolver> interfaces = std::make_shared<PosixInterfaceResolver>(
      counters, NetUtils(SNUtils(kernel, resolverConfiguration, interfaceNaming, log)),
      networkConfiguration, strings);
  std::shared_ptr<BestRouteFinder> bestRoutes =
      std::make_shared<BestRouteFinder>(pathMonitors, mainQueue);
  AdapterIntentHandler adapters{interfaces, bestRoutes, strings};
  // The widgets.
  WidgetStore store{files, storePlace(configuration), log};
  SocketChildProgramLauncher launcher;
  ExtensionClient extension{
      {.launcher = launcher, .mainQueue = mainQueue, .clock = clock, .log = log}};
  WidgetDesk desk;
  HostServices services;
};

HostMachine::HostMachine(const HostChoice& choice, const UserLanguage& language, DiagnosticLog& log,
                         HostMessages& messages, std::vector<GivenVariable> givenVariables)
    : parts_(std::make_unique<Parts>(choice, language, log, messages, std::move(givenVariables))) {}

HostMachine::~HostMachine() = default;

const HostServices& HostMachine::services() const { return parts_->services; }

}  // namespace lanternfold
