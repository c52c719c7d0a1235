// Answers requests for entries of the adapter widget.
//
// Made by: whoever serves the widget. Read by: the command line, a widget service.
#pragma once

#include <functional>
#include <memory>

#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"
#include "NetworkWidgetVexExtension/Providers/NetworkAdapterEntry.h"
#include "Platform/Clock.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// Holds no state between requests. Main queue.
class NetworkAdapterProvider {
 public:
  /// Makes a monitor that belongs to one request.
  using MonitorFactory = std::function<std::shared_ptr<NetworkStateMonitor>()>;
  /// Called exactly once, with an entry dated when its state was complete.
  using Completion = std::function<void(NetworkAdapterEntry)>;

  /// `clock` and `strings` outlive the provider.
  NetworkAdapterProvider(const Clock& clock, const StringTable& strings,
                         MonitorFactory makeMonitor);

  /// Sample content with an empty configuration, dated now.
  [[nodiscard]] NetworkAdapterEntry placeholder() const;

  /// Sample content with the configuration given, dated now.
  [[nodiscard]] NetworkAdapterEntry snapshot(const AdapterConfigurationIntent& configuration) const;

  /// Resolves the interfaces, nothing else, and completes with this machine's entry. Its timeline
  /// holds that one entry and is to be reloaded when it ends. Location is never asked for.
  void timeline(const AdapterConfigurationIntent& configuration, Completion completion) const;

 private:
  const Clock& clock_;
  const StringTable& strings_;
  MonitorFactory makeMonitor_;
};

}  // namespace lanternfold
