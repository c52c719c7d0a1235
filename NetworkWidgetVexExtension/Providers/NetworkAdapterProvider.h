// Answers requests for entries of the adapter widget.
//
// Made by: whoever serves the widget. Read by: the command line, a widget service.
#pragma once

#include "NetworkWidgetVexExtension/Providers/NetworkAdapterEntry.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateMonitorFactory.h"
#include "Platform/Clock.h"
#include "Platform/StringTable.h"
#include "WidgetService/TimelineProvider.h"

namespace lanternfold {

/// Holds no state between requests.
class NetworkAdapterProvider final
    : public IntentTimelineProvider<NetworkAdapterEntry, AdapterConfigurationIntent> {
 public:
  /// `clock` and `strings` outlive the provider.
  NetworkAdapterProvider(const Clock& clock, const StringTable& strings,
                         NetworkStateMonitorFactory makeMonitor);

  /// Sample content with an empty configuration, dated now.
  [[nodiscard]] NetworkAdapterEntry placeholder(TimelineProviderContext context) const override;

  /// Sample content with the configuration given, dated now, before this returns.
  void getSnapshot(const AdapterConfigurationIntent& configuration, TimelineProviderContext context,
                   SnapshotCompletion completion) const override;

  /// Resolves the interfaces, nothing else, and completes with this machine's one entry, dated when
  /// its state was complete. There is no application group, and location is never asked for.
  void getTimeline(const AdapterConfigurationIntent& configuration, TimelineProviderContext context,
                   TimelineCompletion completion) const override;

 private:
  [[nodiscard]] NetworkAdapterEntry sampleEntry(
      const AdapterConfigurationIntent& configuration) const;

  const Clock& clock_;
  const StringTable& strings_;
  NetworkStateMonitorFactory makeMonitor_;
};

}  // namespace lanternfold
