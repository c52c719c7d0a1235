// Answers requests for entries of the widgets that show the network's state.
//
// Made by: whoever serves the widgets, one for each. Read by: the command line, a widget service.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateEntry.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateMonitorFactory.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/StringTable.h"
#include "WidgetService/EnvironmentValues.h"
#include "WidgetService/TimelineProvider.h"

namespace lanternfold {

/// Holds no state between requests.
class NetworkStateProvider final
    : public IntentTimelineProvider<NetworkStateEntry, ConfigurationIntent> {
 public:
  /// The references outlive the provider and its requests.
  struct Environment {
    const Clock& clock;
    const StringTable& strings;
    DispatchQueue& mainQueue;
    NetworkStateMonitorFactory makeMonitor;
    /// The monitors' application group is read from here.
    EnvironmentValues values = {};
  };

  /// What the widget shows and how.
  struct Options {
    /// None for every category.
    std::optional<NetworkSourceCategory> categoryFilter = std::nullopt;
    bool skipGeoIp = false;
  };

  /// `locAuthObserver` is not null.
  NetworkStateProvider(Options options,
                       std::shared_ptr<LocationAuthorizationObserver> locAuthObserver,
                       Environment environment);

  /// Sample content with an empty configuration, dated now.
  [[nodiscard]] NetworkStateEntry placeholder(TimelineProviderContext context) const override;

  /// Sample content with the configuration given, dated now, before this returns.
  void getSnapshot(const ConfigurationIntent& configuration, TimelineProviderContext context,
                   SnapshotCompletion completion) const override;

  /// Completes with the one entry of this machine's state, dated when it was complete, on the queue
  /// that the monitor's last report comes on; not at all when the state never becomes complete. A
  /// widget that shows Wi-Fi has the user asked for consent on the way, unless he has decided; the
  /// entry does not wait for that.
  void getTimeline(const ConfigurationIntent& configuration, TimelineProviderContext context,
                   TimelineCompletion completion) const override;

 private:
  [[nodiscard]] NetworkStateEntry sampleEntry(const ConfigurationIntent& configuration,
                                              TimelineProviderContext context) const;
  [[nodiscard]] std::optional<std::string> appGroupId() const;
  [[nodiscard]] NetworkSourceCategory categories() const;
  void requestLocationAuthorization() const;

  Options options_;
  std::shared_ptr<LocationAuthorizationObserver> locAuthObserver_;
  Environment environment_;
};

}  // namespace lanternfold
