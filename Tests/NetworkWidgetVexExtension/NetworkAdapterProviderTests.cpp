#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Providers/NetworkAdapterProvider.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/NullInternetInfoResolver.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

/// Two interfaces; answering takes a second, so that the moment of the answer can be told.
class SlowInterfaceResolver final : public InterfaceResolver {
 public:
  explicit SlowInterfaceResolver(SimulatedClock& clock) : clock_(clock) {}

  std::vector<BasicInterface> interfaces() override { return {}; }
  std::vector<BasicInterface> interfacesExcluding(const std::vector<std::string>&) override {
    return {};
  }
  std::vector<BasicInterface> interfacesPrefixed(std::string_view prefix) override {
    clock_.advance(std::chrono::seconds(1));
    prefixes.emplace_back(prefix);
    return {{.name = "en0"}, {.name = "en1"}};
  }
  std::optional<BasicInterface> interfaceNamed(std::string_view) override { return std::nullopt; }

  std::vector<std::string> prefixes;

 private:
  SimulatedClock& clock_;
};

class NetworkAdapterProviderTest : public testing::Test {
 protected:
  std::shared_ptr<NetworkStateMonitor> makeMonitor(const std::optional<std::string>& appGroupId,
                                                   bool skipGeoIP) {
    groups_.push_back(appGroupId);
    skips_.push_back(skipGeoIP);
    return std::make_shared<NetworkStateMonitor>(
        std::make_shared<NullInternetInfoResolver>(strings_), resolver_,
        std::make_shared<FakeWlanInterfaceResolver>(), nullptr,
        NetworkStateMonitor::Environment{.pathMonitors = pathMonitors_,
                                         .mainQueue = dispatch_.mainQueue(),
                                         .strings = strings_});
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory pathMonitors_;
  FakeStringTable strings_;
  std::shared_ptr<SlowInterfaceResolver> resolver_ =
      std::make_shared<SlowInterfaceResolver>(clock_);
  std::vector<NetworkAdapterEntry> snapshots() const {
    std::vector<NetworkAdapterEntry> snapshots;
    provider_.getSnapshot(configuration_, {}, [&snapshots](NetworkAdapterEntry entry) {
      snapshots.push_back(std::move(entry));
    });
    return snapshots;
  }
  std::vector<Timeline<NetworkAdapterEntry>> timelines() const {
    std::vector<Timeline<NetworkAdapterEntry>> timelines;
    provider_.getTimeline(configuration_, {}, [&timelines](Timeline<NetworkAdapterEntry> timeline) {
      timelines.push_back(std::move(timeline));
    });
    return timelines;
  }

  std::vector<std::optional<std::string>> groups_;  ///< of the monitors made
  std::vector<bool> skips_;
  NetworkAdapterProvider provider_{
      clock_, strings_, [this](const std::optional<std::string>& appGroupId, bool skipGeoIP) {
        return makeMonitor(appGroupId, skipGeoIP);
      }};
  const AdapterConfigurationIntent configuration_{
      .adapter = NetworkAdapter{.identifier = "en1", .display = "en1"}, .showTimestamp = true};
};

TEST_F(NetworkAdapterProviderTest, APlaceholderIsSampleContentWithAnEmptyConfiguration) {
  EXPECT_EQ(provider_.placeholder({}),
            (NetworkAdapterEntry{.date = clock_.now(),
                                 .networkState = NetworkState::placeholder(true, strings_),
                                 .configuration = {}}));
  EXPECT_TRUE(groups_.empty());
}

TEST_F(NetworkAdapterProviderTest, ASnapshotIsSampleContentWithTheConfigurationGiven) {
  EXPECT_EQ(
      snapshots(),
      (std::vector{NetworkAdapterEntry{.date = clock_.now(),
                                       .networkState = NetworkState::placeholder(true, strings_),
                                       .configuration = configuration_}}));
  EXPECT_TRUE(groups_.empty());
}

TEST_F(NetworkAdapterProviderTest, ATimelineIsOneEntryDatedWhenItsStateWasComplete) {
  const auto asked = clock_.now();
  const auto answered = timelines();
  ASSERT_EQ(answered.size(), 1U);
  EXPECT_EQ(answered[0].policy, TimelineReloadPolicy::atEnd);
  ASSERT_EQ(answered[0].entries.size(), 1U);
  const NetworkAdapterEntry& entry = answered[0].entries[0];
  EXPECT_EQ(entry.date, asked + std::chrono::seconds(1));
  EXPECT_EQ(entry.configuration, configuration_);
  ASSERT_EQ(entry.networkState.others.size(), 2U);
  EXPECT_EQ(entry.networkState.others[1].name, "en1");
}

TEST_F(NetworkAdapterProviderTest, ATimelineResolvesTheInterfacesOnceAndListensToNoPath) {
  (void)timelines();
  EXPECT_EQ(resolver_->prefixes, std::vector<std::string>{"en"});
  EXPECT_TRUE(pathMonitors_.monitors().empty());
}

TEST_F(NetworkAdapterProviderTest, ATimelineBeginsAtOnce) {
  (void)timelines();
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
}

TEST_F(NetworkAdapterProviderTest, EveryTimelineHasAMonitorOfItsOwnAndNoneHasAGroup) {
  (void)timelines();
  (void)timelines();
  EXPECT_EQ(groups_, (std::vector<std::optional<std::string>>(2)));
  EXPECT_EQ(skips_, (std::vector<bool>{false, false}));
}

}  // namespace
}  // namespace lanternfold
