#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorProvider.h"

namespace lanternfold {

BandwidthMonitorEntry BandwidthMonitorProvider::placeholder(TimelineProviderContext) const {
  return {.date = clock_.now()};
}

void BandwidthMonitorProvider::getSnapshot(TimelineProviderContext,
                                           SnapshotCompletion completion) const {
  completion({.date = clock_.now()});
}

void BandwidthMonitorProvider::getTimeline(TimelineProviderContext,
                                           TimelineCompletion completion) const {
  completion({.entries = {{.date = clock_.now()}}, .policy = TimelineReloadPolicy::never});
}

}  // namespace lanternfold
