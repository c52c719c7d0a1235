#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateProvider.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Request = FakeLocationConsent::Request;

/// Keeps what it is asked until the test answers.
class HeldInternetResolver final : public InternetInfoResolver {
 public:
  void resolve(UpdateHandler updateHandler) override {
    handlers.push_back(std::move(updateHandler));
  }

  std::vector<UpdateHandler> handlers;
};

class CountingWlanResolver final : public WlanInterfaceResolver {
 public:
  std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError> wlanInterface() override {
    ++asked;
    return WlanInterface{.active = true, .displayName = "Wi-Fi", .interface = {.name = "wlan0"}};
  }

  int asked = 0;
};

class NoInterfaces final : public InterfaceResolver {
 public:
  std::vector<BasicInterface> interfaces() override { return {}; }
  std::vector<BasicInterface> interfacesExcluding(const std::vector<std::string>&) override {
    return {};
  }
  std::vector<BasicInterface> interfacesPrefixed(std::string_view) override { return {}; }
  std::optional<BasicInterface> interfaceNamed(std::string_view) override { return std::nullopt; }
};

class NetworkStateProviderTest : public testing::Test {
 protected:
  /// What has not been answered holds its monitor, which holds the resolver.
  void TearDown() override { internet_->handlers.clear(); }

  NetworkStateProvider provider(NetworkStateProvider::Options options = {},
                                EnvironmentValues values = {}) {
    return {std::move(options),
            observer_,
            {.clock = clock_,
             .strings = strings_,
             .mainQueue = dispatch_.mainQueue(),
             .makeMonitor =
                 [this](const std::optional<std::string>& appGroupId, bool skipGeoIP) {
                   groups_.push_back(appGroupId);
                   skips_.push_back(skipGeoIP);
                   const auto monitor = std::make_shared<NetworkStateMonitor>(
                       internet_, std::make_shared<NoInterfaces>(), wlan_, nullptr,
                       NetworkStateMonitor::Environment{.pathMonitors = pathMonitors_,
                                                        .mainQueue = dispatch_.mainQueue(),
                                                        .strings = strings_});
                   monitor_ = monitor;
                   return monitor;
                 },
             .values = std::move(values)}};
  }
  NetworkStateProvider wlanProvider() {
    return provider({.categoryFilter = NetworkSourceCategory::wlan()});
  }
  NetworkStateProvider::TimelineCompletion collect() {
    return
        [this](Timeline<NetworkStateEntry> timeline) { timelines_.push_back(std::move(timeline)); };
  }
  void ask(const NetworkStateProvider& provider) { provider.getTimeline(shown_, {}, collect()); }
  std::vector<NetworkStateEntry> snapshotsOf(const NetworkStateProvider& provider,
                                             TimelineProviderContext context = {}) const {
    std::vector<NetworkStateEntry> snapshots;
    provider.getSnapshot(shown_, context, [&snapshots](NetworkStateEntry entry) {
      snapshots.push_back(std::move(entry));
    });
    return snapshots;
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory pathMonitors_;
  FakeStringTable strings_;
  FakeLocationConsent consent_{dispatch_.mainQueue()};
  std::shared_ptr<LocationAuthorizationObserver> observer_ =
      std::make_shared<LocationAuthorizationObserver>(consent_);
  std::shared_ptr<HeldInternetResolver> internet_ = std::make_shared<HeldInternetResolver>();
  std::shared_ptr<CountingWlanResolver> wlan_ = std::make_shared<CountingWlanResolver>();
  std::weak_ptr<NetworkStateMonitor> monitor_;
  std::vector<std::optional<std::string>> groups_;
  std::vector<bool> skips_;
  std::vector<Timeline<NetworkStateEntry>> timelines_;
  const ConfigurationIntent shown_{.showTimestamp = true};
};

TEST_F(NetworkStateProviderTest, APlaceholderIsSampleContentWithAnEmptyConfiguration) {
  EXPECT_EQ(provider().placeholder({.isPreview = true}),
            (NetworkStateEntry{.date = clock_.now(),
                               .networkState = NetworkState::placeholder(true, strings_),
                               .configuration = {},
                               .isSnapshot = true,
                               .isPreview = true}));
}

TEST_F(NetworkStateProviderTest, APlaceholderThatSkipsTheProviderHasNoGeography) {
  EXPECT_EQ(provider({.skipGeoIp = true}).placeholder({}).networkState,
            NetworkState::placeholder(false, strings_));
}

TEST_F(NetworkStateProviderTest,
       ASnapshotIsAPlaceholderWithItsConfigurationAndCompletesOnceAtOnce) {
  EXPECT_EQ(
      snapshotsOf(provider(), {.isPreview = true}),
      (std::vector{NetworkStateEntry{.date = clock_.now(),
                                     .networkState = NetworkState::placeholder(true, strings_),
                                     .configuration = shown_,
                                     .isSnapshot = true,
                                     .isPreview = true}}));
  EXPECT_EQ(snapshotsOf(provider({.skipGeoIp = true})).front().networkState,
            NetworkState::placeholder(false, strings_));
}

TEST_F(NetworkStateProviderTest, ASnapshotNeverStartsAMonitorNorTouchesTheConsent) {
  (void)snapshotsOf(provider());
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
  EXPECT_TRUE(groups_.empty());
  EXPECT_TRUE(consent_.requests().empty());
}

TEST_F(NetworkStateProviderTest, LooksAtTheMachineATenthOfASecondAfterTheRequest) {
  ask(wlanProvider());
  dispatch_.advance(99ms);
  EXPECT_EQ(wlan_->asked, 0);
  dispatch_.advance(1ms);
  EXPECT_EQ(wlan_->asked, 1);
}

TEST_F(NetworkStateProviderTest, ATimelineIsOneEntryOfThisMachineDatedWhenItWasComplete) {
  const auto asked = clock_.now();
  wlanProvider().getTimeline(shown_, {.isPreview = true}, collect());
  dispatch_.advance(1s);
  ASSERT_EQ(timelines_.size(), 1U);
  EXPECT_EQ(timelines_[0].policy, TimelineReloadPolicy::atEnd);
  ASSERT_EQ(timelines_[0].entries.size(), 1U);
  const NetworkStateEntry& entry = timelines_[0].entries[0];
  EXPECT_EQ(entry.date, asked + 100ms);
  EXPECT_EQ(entry.networkState.wlan->interface.name, "wlan0");
  EXPECT_EQ(entry.configuration, shown_);
  EXPECT_FALSE(entry.isSnapshot);
  EXPECT_TRUE(entry.isPreview);
}

TEST_F(NetworkStateProviderTest, OnlyTheLastReportMakesATimelineAndOnlyOnce) {
  ask(provider({.categoryFilter =
                    NetworkSourceCategory::wlan().unionWith(NetworkSourceCategory::internet())}));
  dispatch_.advance(1s);
  EXPECT_TRUE(timelines_.empty()) << "the internet side has not answered";
  ASSERT_EQ(internet_->handlers.size(), 1U);
  for (const bool complete : {false, true, true}) {
    internet_->handlers[0](InternetInfo{.displayName = "Internet"}, complete, {});
    EXPECT_EQ(timelines_.size(), complete ? 1U : 0U);
  }
}

TEST_F(NetworkStateProviderTest, AnEntryIsDatedWhenTheLastAnswerCame) {
  const auto asked = clock_.now();
  ask(provider({.categoryFilter = NetworkSourceCategory::internet()}));
  dispatch_.advance(7s);
  internet_->handlers.at(0)(InternetInfo{.displayName = "Internet"}, true, {});
  EXPECT_EQ(timelines_.at(0).entries.at(0).date, asked + 7s);
}

TEST_F(NetworkStateProviderTest, AFailureOfTheInternetSideIsPartOfTheStateAndNoSecondTimeline) {
  ask(provider({.categoryFilter = NetworkSourceCategory::internet()}));
  dispatch_.advance(1s);
  internet_->handlers.at(0)(InternetInfo{.displayName = "Internet"}, true,
                            std::make_error_code(std::errc::timed_out));
  EXPECT_EQ(timelines_.size(), 1U);
}

TEST_F(NetworkStateProviderTest, AStateThatNeverBecomesCompleteIsNeverAnswered) {
  ask(provider());
  dispatch_.advance(1h);
  EXPECT_TRUE(timelines_.empty());
}

TEST_F(NetworkStateProviderTest, AFilterLeavesTheOtherCategoriesAlone) {
  ask(wlanProvider());
  dispatch_.advance(1s);
  EXPECT_TRUE(internet_->handlers.empty());
}

TEST_F(NetworkStateProviderTest, ListensToNoPath) {
  ask(wlanProvider());
  dispatch_.advance(1s);
  EXPECT_TRUE(pathMonitors_.monitors().empty());
}

TEST_F(NetworkStateProviderTest, EveryTimelineHasAMonitorOfItsOwnForTheGroupOfItsEnvironment) {
  EnvironmentValues values;
  values.set<AppGroupIdEnvironmentKey>("a.group");
  const auto asked = provider({.categoryFilter = NetworkSourceCategory::wlan(), .skipGeoIp = true},
                              std::move(values));
  ask(asked);
  ask(asked);
  EXPECT_EQ(groups_, (std::vector<std::optional<std::string>>{"a.group", "a.group"}));
  EXPECT_EQ(skips_, (std::vector<bool>{true, true}));
}

TEST_F(NetworkStateProviderTest, TheGroupIsThatOfTheProductUnlessItIsSet) {
  ask(provider());
  EnvironmentValues none;
  none.set<AppGroupIdEnvironmentKey>(std::nullopt);
  ask(provider({}, std::move(none)));
  EXPECT_EQ(groups_, (std::vector<std::optional<std::string>>{
                         "7RKM3PW2ZB.net.quernaple.LanternfoldX", std::nullopt}));
  EXPECT_EQ(skips_, (std::vector<bool>{false, false}));
}

TEST_F(NetworkStateProviderTest, RecommendsNoConfigurations) {
  EXPECT_TRUE(provider().recommendations().empty());
}

TEST_F(NetworkStateProviderTest, NothingHoldsTheMonitorAfterItsLastReport) {
  ask(wlanProvider());
  EXPECT_FALSE(monitor_.expired());
  dispatch_.advance(1s);
  EXPECT_TRUE(monitor_.expired());
}

TEST_F(NetworkStateProviderTest,
       EveryRequestOfAWidgetWithWifiAsksForConsentWhileItIsNotDetermined) {
  const auto panoramic = provider();
  ask(wlanProvider());
  ask(panoramic);
  ask(panoramic);
  EXPECT_EQ(consent_.requests(), (std::vector{Request::always, Request::always, Request::always}));
}

TEST_F(NetworkStateProviderTest, AnInternetWidgetNeverTouchesTheConsent) {
  ask(provider({.categoryFilter = NetworkSourceCategory::internet()}));
  EXPECT_EQ(consent_.managersMade(), 0U);
}

TEST_F(NetworkStateProviderTest, AsksByTheStatus) {
  for (const auto& [status, asks] : std::vector<std::pair<std::int32_t, std::size_t>>{
           {0, 1}, {1, 0}, {2, 0}, {3, 0}, {4, 1}, {-1, 0}, {5, 0}}) {
    consent_.setAuthorizationStatus(status);
    const std::size_t before = consent_.requests().size();
    ask(wlanProvider());
    EXPECT_EQ(consent_.requests().size() - before, asks) << status;
  }
}

TEST_F(NetworkStateProviderTest, DoesNotWaitForTheConsent) {
  ask(wlanProvider());
  dispatch_.advance(1s);
  EXPECT_EQ(consent_.questions().size(), 1U) << "asked, and not yet answered";
  EXPECT_EQ(timelines_.size(), 1U);
}

TEST(NetworkStateProviderDeathTest, NeedsAnObserverOfTheConsent) {
  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  const FakeStringTable strings;
  EXPECT_DEATH(NetworkStateProvider({}, nullptr,
                                    {.clock = clock,
                                     .strings = strings,
                                     .mainQueue = dispatch.mainQueue(),
                                     .makeMonitor = {}}),
               "has no observer of the consent");
}

}  // namespace
}  // namespace lanternfold
