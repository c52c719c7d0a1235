// The production's wiring of a monitor, over a machine of fakes: what its pieces share, ask and
// keep.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Monitor/ProductionGraph.h"
#include "Tests/CommandLine/WifiScenes.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* group = "a.group";
constexpr const char* fileName = "connection-metrics-storage_default.json";

class ProductionGraphTest : public testing::Test {
 protected:
  ProductionGraphTest() {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    fake_.addEthernet("en1", {10, 0, 0, 5});
    fake_.pathMonitors.deliver(
        {.status = PathStatus::satisfied,
         .availableInterfaces = {
             {.name = "en0", .index = 2, .type = PathInterfaceType::wiredEthernet}}});
    fake_.urlSessions.answer("https://four.example/lanternfold/ip.php", R"({"ip":"203.0.113.7"})");
    fake_.urlSessions.answer("https://six.example/lanternfold/ip.php", R"({"ip":"2001:db8::7"})");
    fake_.urlSessions.answer(
        geolocation_, R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})");
  }

  std::shared_ptr<NetworkStateMonitor> make(const std::optional<std::string>& appGroupId,
                                            bool skipGeoIP = false) {
    return makeNetworkStateMonitor(
        appGroupId, skipGeoIP,
        {.platform = fake_.machine.platform,
         .metricsReader = fake_.machine.metricsReader,
         .serviceUrls = {.ipv4Echo = ServiceUrl::of("https://four.example"),
                         .ipv6Echo = ServiceUrl::of("https://six.example"),
                         .geolocation = ServiceUrl::of("http://geo.example")},
         .whileLocked = whileLocked_});
  }
  /// The complete state of one refresh.
  NetworkState resolve(const std::shared_ptr<NetworkStateMonitor>& monitor,
                       NetworkSourceCategory categories) {
    std::optional<NetworkState> resolved;
    monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
      if (complete) resolved = state;
    });
    monitor->setActiveCategories(categories);
    monitor->refresh();
    EXPECT_TRUE(fake_.dispatch.runUntil([&] { return resolved.has_value(); }, 30s));
    monitor->setStateUpdateHandler(nullptr);
    return resolved.value_or(NetworkState::initial(fake_.strings));
  }
  [[nodiscard]] bool hasSampleIn(const std::filesystem::path& folder) {
    return fake_.fileSystem.bytes(folder / fileName).has_value();
  }
  static bool keepsProvider(const UserDefaults& suite) {
    const auto look = suite.object("CachedPublicInfoStorage");
    return look && look->has_value();
  }

  FakeMachine fake_;
  WhileLocked whileLocked_ = WhileLocked::kernelCounters;
  const std::string geolocation_ = "http://geo.example/json/?fields=isp,query,countryCode,as";
};

TEST_F(ProductionGraphTest, AGroupsMonitorKeepsItsTrafficAndItsProviderWithTheGroup) {
  const NetworkState state = resolve(make(group), NetworkSourceCategory::all());
  EXPECT_EQ(state.internet.isp, "Example Net");
  EXPECT_THAT(state.others, SizeIs(2));
  EXPECT_TRUE(hasSampleIn("/containers/groups/a.group"));
  EXPECT_FALSE(hasSampleIn("/containers/metrics"));
  EXPECT_TRUE(keepsProvider(*fake_.userDefaults.suite(group)));
  EXPECT_FALSE(keepsProvider(*fake_.userDefaults.standard()));
}

TEST_F(ProductionGraphTest, WithoutAGroupTheStandardSettingsAndTheDefaultLocationAreUsed) {
  (void)resolve(make(std::nullopt), NetworkSourceCategory::all());
  EXPECT_TRUE(hasSampleIn("/containers/metrics"));
  EXPECT_TRUE(keepsProvider(*fake_.userDefaults.standard()));
}

TEST_F(ProductionGraphTest, AGroupWhoseSuiteCannotBeOpenedHasTheStandardSettings) {
  fake_.userDefaults.setRefusing(true);
  (void)resolve(make(group), NetworkSourceCategory::internet());
  EXPECT_TRUE(keepsProvider(*fake_.userDefaults.standard()));
}

TEST_F(ProductionGraphTest, AGroupWhoseContainerCannotBeFoundHasTheDefaultLocation) {
  fake_.groupContainer.setRefusingGroups(true);
  (void)resolve(make(group), NetworkSourceCategory::other());
  EXPECT_TRUE(hasSampleIn("/containers/metrics"));
}

TEST_F(ProductionGraphTest, WithoutGeoipThereIsNeitherALookUpNorACache) {
  const NetworkState state = resolve(make(group, true), NetworkSourceCategory::internet());
  EXPECT_EQ(state.internet.ip, "203.0.113.7");
  EXPECT_EQ(state.internet.ipv6, "2001:db8::7");
  ASSERT_TRUE(state.internet.interface);
  EXPECT_EQ(state.internet.interface->name, "en0");
  EXPECT_FALSE(state.internet.isp);
  EXPECT_FALSE(state.internet.country);
  EXPECT_THAT(fake_.urlSessions.requestedUrls(), Not(Contains(geolocation_)));
  EXPECT_FALSE(keepsProvider(*fake_.userDefaults.suite(group)));
}

TEST_F(ProductionGraphTest, ThereIsNoCellularProvider) {
  const auto monitor = make(group);
  EXPECT_FALSE(monitor->isCellularAvailable());
  EXPECT_FALSE(resolve(monitor, NetworkSourceCategory::cellular()).cellularEnabled);
  EXPECT_FALSE(monitor->currentState().cellular);
}

TEST_F(ProductionGraphTest, TwoMonitorsShareNothingButWhatIsKept) {
  (void)resolve(make(group), NetworkSourceCategory::internet());
  (void)resolve(make(group), NetworkSourceCategory::internet());
  const auto urls = fake_.urlSessions.requestedUrls();
  EXPECT_EQ(std::ranges::count(urls, geolocation_), 1) << "the provider is kept";
  EXPECT_EQ(std::ranges::count(urls, "https://four.example/lanternfold/ip.php"), 2);
}

TEST_F(ProductionGraphTest, NoScheduleOfSamplesIsStarted) {
  const auto monitor = make(group);
  (void)resolve(monitor, NetworkSourceCategory::all());
  fake_.dispatch.advance(10s);
  EXPECT_EQ(fake_.dispatch.waitingWorks(), 0U);
}

TEST_F(ProductionGraphTest, TheWifisRecordHasTheRecordedCounters) {
  addWifiLink(fake_, "en2");
  fake_.wifi.setFacts(joinedFacts({}, "en2"));
  const NetworkState state = resolve(make(group), NetworkSourceCategory::wlan());
  ASSERT_TRUE(state.wlan);
  EXPECT_EQ(state.wlan->interface.name, "en2");
  EXPECT_TRUE(hasSampleIn("/containers/groups/a.group"));
}

TEST_F(ProductionGraphTest, AnAdapterWhoseTrafficIsLockedAwayIsLeftOutWhereThatIsTheRule) {
  whileLocked_ = WhileLocked::failure;
  // A date of the far future, in seconds since 2001.
  const std::string lease = "9000000000.00000000";
  const std::filesystem::path lock = std::filesystem::path("/containers/groups/a.group") /
                                     "connection-metrics-storage_default.lock";
  fake_.fileSystem.makeFolder("/containers/groups/a.group");
  ASSERT_TRUE(fake_.fileSystem.replaceFile(lock, lease));
  EXPECT_THAT(resolve(make(group), NetworkSourceCategory::other()).others, IsEmpty());
  EXPECT_THAT(fake_.diagnostics.lines(), Contains(HasSubstr("Adapters are left out this time")));
  EXPECT_TRUE(fake_.fileSystem.removeFile(lock));
  EXPECT_THAT(resolve(make(group), NetworkSourceCategory::other()).others, SizeIs(2));
}

}  // namespace
}  // namespace lanternfold
