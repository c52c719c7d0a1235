// Answers requests for the entry of the bandwidth monitor widget.
//
// Made by: the widget's body. Read by: a widget service.
#pragma once

#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorEntry.h"
#include "Platform/Clock.h"
#include "WidgetService/TimelineProvider.h"

namespace lanternfold {

/// Everything completes before it returns, with an entry dated now. Any thread.
class BandwidthMonitorProvider final : public TimelineProvider<BandwidthMonitorEntry> {
 public:
  /// `clock` outlives the provider.
  explicit BandwidthMonitorProvider(const Clock& clock) : clock_(clock) {}

  [[nodiscard]] BandwidthMonitorEntry placeholder(TimelineProviderContext context) const override;
  void getSnapshot(TimelineProviderContext context, SnapshotCompletion completion) const override;
  /// A timeline that is never to be reloaded: the tile changes with the extension only.
  void getTimeline(TimelineProviderContext context, TimelineCompletion completion) const override;

 private:
  const Clock& clock_;
};

}  // namespace lanternfold
