#include "CommandLine/LinuxMachine.h"

#include <cstdio>

#include "CommandLine/DataFolders.h"
#include "CommandLine/LinuxMainLoop.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/GettextStringTable.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "PlatformLinux/System/SystemClock.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"

namespace lanternfold {

// In the order of construction: what listens to the event loop goes before the loop does.
struct LinuxMachine::Parts {
  explicit Parts(DiagnosticsTarget target)
      : diagnostics(target == DiagnosticsTarget::standardError ? stderr : stdout) {}

  StreamDiagnosticLog diagnostics;
  SystemClock clock;
  GettextStringTable strings{"lanternfold", translationsFolder()};
  EventLoop eventLoop;
  AsioDispatch dispatch{eventLoop};
  LinuxMainLoop mainLoop{eventLoop, dispatch};
  LinuxNetworkKernel kernel;
  LinuxResolverConfiguration resolverConfiguration;
  UdevHardwareDatabase hardwareDatabase;
  LinuxNetworkConfiguration networkConfiguration{hardwareDatabase};
  LinuxInterfaceNaming interfaceNaming;
  LinuxPathMonitorFactory pathMonitors{eventLoop};
  Machine machine{.platform = {.kernel = kernel,
                               .resolverConfiguration = resolverConfiguration,
                               .networkConfiguration = networkConfiguration,
                               .interfaceNaming = interfaceNaming,
                               .pathMonitors = pathMonitors,
                               .dispatch = dispatch,
                               .clock = clock,
                               .strings = strings,
                               .diagnostics = diagnostics},
                  .metricsReader = std::make_shared<LinuxConnectionMetricsReader>(),
                  .mainLoop = mainLoop,
                  .assets = assetsFolder()};
};

LinuxMachine::LinuxMachine(DiagnosticsTarget diagnostics)
    : parts_(std::make_unique<Parts>(diagnostics)) {}

LinuxMachine::~LinuxMachine() = default;

const Machine& LinuxMachine::machine() const { return parts_->machine; }

}  // namespace lanternfold
