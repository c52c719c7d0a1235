#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorProvider.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

class BandwidthMonitorProviderTest : public testing::Test {
 protected:
  SimulatedClock clock_;
  const BandwidthMonitorProvider provider_{clock_};
};

TEST_F(BandwidthMonitorProviderTest, APlaceholderIsDatedNow) {
  EXPECT_EQ(provider_.placeholder({}), BandwidthMonitorEntry{clock_.now()});
}

TEST_F(BandwidthMonitorProviderTest, ASnapshotCompletesOnceAtOnceWithAnEntryDatedNow) {
  std::vector<BandwidthMonitorEntry> entries;
  provider_.getSnapshot({}, [&](BandwidthMonitorEntry entry) { entries.push_back(entry); });
  EXPECT_EQ(entries, std::vector{BandwidthMonitorEntry{clock_.now()}});
}

TEST_F(BandwidthMonitorProviderTest, TheTimelineNeverAsksForAReload) {
  std::vector<Timeline<BandwidthMonitorEntry>> timelines;
  provider_.getTimeline({}, [&](Timeline<BandwidthMonitorEntry> timeline) {
    timelines.push_back(std::move(timeline));
  });
  EXPECT_EQ(timelines, (std::vector{Timeline<BandwidthMonitorEntry>{
                           .entries = {{clock_.now()}}, .policy = TimelineReloadPolicy::never}}));
}

}  // namespace
}  // namespace lanternfold
