// The widgets' surroundings over fakes, and what monitors were made of them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

struct WidgetWorld {
  struct Asked {
    std::optional<std::string> appGroupId;
    bool skipGeoIP = false;
    friend bool operator==(const Asked&, const Asked&) = default;
  };

  /// What has not been answered holds its monitor, which holds the resolver.
  ~WidgetWorld() { internet->abandon(); }

  [[nodiscard]] WidgetSurroundings surroundings() {
    return {.clock = clock,
            .strings = strings,
            .mainBundleStrings = mainBundleStrings,
            .mainQueue = dispatch.mainQueue(),
            .pathMonitors = pathMonitors,
            .locationConsent = consent,
            .makeMonitor =
                [this](const std::optional<std::string>& appGroupId, bool skipGeoIP) {
                  asked.push_back({appGroupId, skipGeoIP});
                  return std::make_shared<NetworkStateMonitor>(
                      internet, interfaces, wlan, nullptr,
                      NetworkStateMonitor::Environment{.pathMonitors = pathMonitors,
                                                       .mainQueue = dispatch.mainQueue(),
                                                       .strings = strings});
                },
            .environment = environment};
  }

  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  FakeStringTable strings;
  FakeStringTable mainBundleStrings;
  FakePathMonitorFactory pathMonitors;
  FakeLocationConsent consent{dispatch.mainQueue()};
  std::shared_ptr<FakeInternetInfoResolver> internet = std::make_shared<FakeInternetInfoResolver>();
  std::shared_ptr<FakeInterfaceResolver> interfaces = std::make_shared<FakeInterfaceResolver>();
  std::shared_ptr<FakeWlanInterfaceResolver> wlan = std::make_shared<FakeWlanInterfaceResolver>();
  EnvironmentValues environment;
  std::vector<Asked> asked;  ///< one for each monitor made
};

}  // namespace lanternfold
