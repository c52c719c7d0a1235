// A machine made of the stateful fakes: a kernel with links that count, a virtual clock, and a main
// loop that lets virtual time pass.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

#include "NetBase/LiteralInterfaceNaming.h"
#include "Tests/CommandLine/FactualWifi.h"
#include "Tests/CommandLine/FakeHostStarter.h"
#include "Tests/CommandLine/FakeSoleRecorder.h"
#include "Tests/Support/FakeConnection.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeGroupContainer.h"
#include "Tests/Support/FakeHostLookup.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/FakeNetworkConfiguration.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolverConfiguration.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/FakeUrlSessions.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/FakeWidgetControl.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "Wiring/Machine.h"
#include "Wiring/RelayedConsent.h"

namespace lanternfold {

/// Runs the simulated main queue. A run that nobody stops is interrupted after a while.
class SimulatedMainLoop final : public MainLoop {
 public:
  explicit SimulatedMainLoop(SimulatedDispatch& dispatch) : dispatch_(dispatch) {}

  void runUntilInterrupted() override { runFor(interruptedAfter); }
  void runFor(std::chrono::milliseconds limit) override {
    (void)dispatch_.runUntil([this] { return stopped_; }, limit);
    stopped_ = false;
  }
  void stop() override { stopped_ = true; }

  std::chrono::minutes interruptedAfter{60};

 private:
  SimulatedDispatch& dispatch_;
  bool stopped_ = false;
};

/// The fake kernel's 64-bit counters.
class WideMetricsReader final : public ConnectionMetricsReader {
 public:
  explicit WideMetricsReader(const NetworkKernel& kernel) : kernel_(kernel) {}

  [[nodiscard]] bool is32bitCapped() const override { return false; }
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
    const auto reading = kernel_.beginReading();
    const auto& links = reading->linkRecords();
    if (!links) return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
    std::vector<ConnectionMetricsMap::Entry> entries;
    for (const LinkRecord& link : *links) {
      entries.push_back({.name = link.name, .metrics = metricsOf(link)});
    }
    return ConnectionMetricsMap::of(std::move(entries));
  }

 private:
  static ConnectionMetrics metricsOf(const LinkRecord& link) {
    return {.sentBytes = link.sentBytes,
            .recvBytes = link.recvBytes,
            .sentError = link.sentErrors,
            .recvError = link.recvErrors,
            .sentPacket = link.sentPackets,
            .recvPacket = link.recvPackets,
            .collisions = link.collisions,
            .mtu = link.mtu};
  }

  const NetworkKernel& kernel_;
};

class FakeMachine {
 public:
  FakeNetworkKernel kernel;
  FakeResolverConfiguration resolverConfiguration;
  FakeNetworkConfiguration networkConfiguration;
  LiteralInterfaceNaming interfaceNaming;
  FakePathMonitorFactory pathMonitors;
  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  FakeStringTable strings;
  RecordingDiagnosticLog diagnostics;
  FakeFileSystem fileSystem{clock};
  FakeUserDefaultsSuites userDefaults;
  FakeGroupContainer groupContainer{fileSystem};
  FakeUrlSessions urlSessions{dispatch};
  FakeLocationConsent locationConsent{dispatch.mainQueue()};
  RelayedConsent relayedConsent{locationConsent};
  ConsentRecord consentRecord{{.file = "/data/location-consent",
                               .checkFolder = [] { return std::expected<void, std::string>(); },
                               .makeFolder = [this]() -> std::expected<void, std::string> {
                                 fileSystem.makeFolder("/data");
                                 return {};
                               }},
                              fileSystem,
                              diagnostics};
  FactualWifi wifi{locationConsent};
  FakeHostLookup hostLookup;
  FakeConnectionFactory connections;
  FakeSoleRecorder soleRecorder;
  SimulatedMainLoop mainLoop{dispatch};
  FakeWidgetControl widgetControl;
  FakeHostStarter hostStarter;
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
                               .locationConsent = relayedConsent,
                               .wifiClient = wifi,
                               .hostLookup = hostLookup,
                               .connections = connections},
                  .mainBundleStrings = strings,
                  .metricsReader = std::make_shared<WideMetricsReader>(kernel),
                  .soleRecorder = soleRecorder,
                  .readWifi = [this] { return wifi.report(); },
                  .consentRecord = consentRecord,
                  .mainLoop = mainLoop,
                  .widgetControl = widgetControl,
                  .hostStarter = hostStarter,
                  .assets = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets"};

  /// An Ethernet link with a private address, a router and some traffic.
  void addEthernet(std::string_view name, IPv4Bytes address) {
    kernel.addLink(name);
    kernel.setCounters(name, {.recvBytes = 1'500'000, .sentBytes = 2'000});
    kernel.addIPv4Address(name, address, {255, 255, 255, 0});
    kernel.addDefaultRoute(name, {address[0], address[1], address[2], 1});
    networkConfiguration.addInterface(std::string(name), ConfiguredInterfaceType::ethernet,
                                      "Ethernet Adapter");
  }
};

}  // namespace lanternfold
