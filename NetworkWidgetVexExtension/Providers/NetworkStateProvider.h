// Answers requests for entries of the widgets that show the network's state.
//
// Made by: whoever serves the widgets, one for each. Read by: the command line, a widget service.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateEntry.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/StringTable.h"
#include "WidgetService/TimelineProviderContext.h"

namespace lanternfold {

/// Holds no state between requests. `timeline` belongs on the main queue; the others may be called
/// on any thread.
class NetworkStateProvider {
 public:
  /// Makes a monitor that belongs to one request.
  using MonitorFactory = std::function<std::shared_ptr<NetworkStateMonitor>(
      const std::optional<std::string>& appGroupId, bool skipGeoIP)>;
  /// Called at most once, on the queue that the monitor's last report comes on: not at all when the
  /// state never becomes complete.
  using Completion = std::function<void(NetworkStateEntry)>;

  /// All outlive the provider and its requests.
  struct Environment {
    const Clock& clock;
    const StringTable& strings;
    DispatchQueue& mainQueue;
    MonitorFactory makeMonitor;
  };

  /// What the widget shows and how.
  struct Options {
    std::optional<std::string> appGroupId = std::nullopt;
    /// None for every category.
    std::optional<NetworkSourceCategory> categoryFilter = std::nullopt;
    bool skipGeoIp = false;
  };

  /// `locAuthObserver` is not null.
  NetworkStateProvider(Options options,
                       std::shared_ptr<LocationAuthorizationObserver> locAuthObserver,
                       Environment environment);

  /// Sample content with an empty configuration, dated now.
  [[nodiscard]] NetworkStateEntry placeholder(TimelineProviderContext context) const;

  /// Sample content with the configuration given, dated now.
  [[nodiscard]] NetworkStateEntry snapshot(const ConfigurationIntent& configuration,
                                           TimelineProviderContext context) const;

  /// Completes with the entry of this machine's state, dated when it was complete. Its timeline
  /// holds that one entry and is to be reloaded when it ends. A widget that shows Wi-Fi has the
  /// user asked for consent on the way, unless he has decided; the entry does not wait for that.
  void timeline(const ConfigurationIntent& configuration, TimelineProviderContext context,
                Completion completion) const;

 private:
  [[nodiscard]] NetworkSourceCategory categories() const;
  void requestLocationAuthorization() const;

  Options options_;
  std::shared_ptr<LocationAuthorizationObserver> locAuthObserver_;
  Environment environment_;
};

}  // namespace lanternfold
