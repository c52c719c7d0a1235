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
  std::shared_ptr<NetworkStateMonitor> makeMonitor() {
    ++monitors_;
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
  int monitors_ = 0;
  NetworkAdapterProvider provider_{clock_, strings_, [this] { return makeMonitor(); }};
  const AdapterConfigurationIntent configuration_{
      .adapter = NetworkAdapter{.identifier = "en1", .display = "en1"}, .showTimestamp = true};
};

TEST_F(NetworkAdapterProviderTest, APlaceholderIsSampleContentWithAnEmptyConfiguration) {
  EXPECT_EQ(provider_.placeholder(),
            (NetworkAdapterEntry{.date = clock_.now(),
                                 .networkState = NetworkState::placeholder(true, strings_),
                                 .configuration = {}}));
  EXPECT_EQ(monitors_, 0);
}

TEST_F(NetworkAdapterProviderTest, ASnapshotIsSampleContentWithTheConfigurationGiven) {
  EXPECT_EQ(provider_.snapshot(configuration_),
            (NetworkAdapterEntry{.date = clock_.now(),
                                 .networkState = NetworkState::placeholder(true, strings_),
                                 .configuration = configuration_}));
  EXPECT_EQ(monitors_, 0);
}

TEST_F(NetworkAdapterProviderTest, ATimelineIsOneEntryDatedWhenItsStateWasComplete) {
  const auto asked = clock_.now();
  std::vector<NetworkAdapterEntry> entries;
  provider_.timeline(configuration_,
                     [&](NetworkAdapterEntry entry) { entries.push_back(std::move(entry)); });
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].date, asked + std::chrono::seconds(1));
  EXPECT_EQ(entries[0].configuration, configuration_);
  ASSERT_EQ(entries[0].networkState.others.size(), 2U);
  EXPECT_EQ(entries[0].networkState.others[1].name, "en1");
}

TEST_F(NetworkAdapterProviderTest, ATimelineResolvesTheInterfacesOnceAndListensToNoPath) {
  provider_.timeline({}, [](const NetworkAdapterEntry&) {});
  EXPECT_EQ(resolver_->prefixes, std::vector<std::string>{"en"});
  EXPECT_TRUE(pathMonitors_.monitors().empty());
}

TEST_F(NetworkAdapterProviderTest, EveryTimelineHasAMonitorOfItsOwn) {
  provider_.timeline({}, [](const NetworkAdapterEntry&) {});
  provider_.timeline({}, [](const NetworkAdapterEntry&) {});
  EXPECT_EQ(monitors_, 2);
}

}  // namespace
}  // namespace lanternfold
