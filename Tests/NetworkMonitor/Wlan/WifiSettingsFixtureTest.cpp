// The fixture of the Wi-Fi's settings is what the finder and the store write, and what they read.
#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "NetworkMonitor/Wlan/MacAddressStore.h"
#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;

constexpr PropertyListValue::Date fixtureDate =
    std::chrono::sys_days(std::chrono::year(2024) / std::chrono::January / 1);
constexpr const char* fixtureDateText = "2024-01-01T00:00:00.000Z";

/// A value of a setting; the one date of the fixture stands in it as a text.
PropertyListValue valueOf(const Json& json) {
  if (!json.is_object()) {
    const auto text = json.get<std::string>();
    return text == fixtureDateText ? PropertyListValue(fixtureDate) : PropertyListValue(text);
  }
  PropertyListDictionary dictionary;
  for (const auto& [key, value] : json.items()) dictionary.set(key, valueOf(value));
  return dictionary;
}

class WifiSettingsFixtureTest : public testing::Test {
 protected:
  WifiSettingsFixtureTest() {
    std::ifstream file(LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/wifi-settings.json");
    fixture_ = Json::parse(file);
  }

  std::optional<std::string> find() {
    clock_.setSleeper([this](std::chrono::nanoseconds duration) {
      dispatch_.runReady();
      clock_.advance(duration);
    });
    return NetworkPathWlanInterfaceNameFinder(
               userDefaults_, {.pathMonitors = paths_, .dispatch = dispatch_, .clock = clock_})
        .wlanInterfaceName();
  }
  /// The setting that was written, against the fixture's.
  void expectWritten(const char* key) {
    EXPECT_EQ(userDefaults_->object(key).value(), valueOf(fixture_.at(key))) << key;
  }
  void restore(const char* key) { userDefaults_->set(key, valueOf(fixture_.at(key))); }

  Json fixture_;
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory paths_;
  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
  MacAddressStore store_{userDefaults_};
};

TEST_F(WifiSettingsFixtureTest, IsWhatIsWritten) {
  ASSERT_EQ(clock_.now(), fixtureDate);
  clock_.stepWallClock(-std::chrono::milliseconds(1));  // the wait
  paths_.deliver({.status = PathStatus::satisfied,
                  .availableInterfaces = {{"wlan0", 3, PathInterfaceType::wifi}}});
  ASSERT_EQ(find(), "wlan0");
  expectWritten("NetworkPathWlanInterfaceNameFinderCache");
  ASSERT_TRUE(store_.save("02:00:00:00:00:01", "en0"));
  ASSERT_TRUE(store_.save("02:00:00:00:00:02", "wlan0"));
  expectWritten("MacAddressStorage");
}

TEST_F(WifiSettingsFixtureTest, IsRead) {
  restore("NetworkPathWlanInterfaceNameFinderCache");
  EXPECT_EQ(find(), "wlan0");
  restore("USER_STORED_MAC");
  EXPECT_EQ(store_.getWlanHwAddress(), "02:00:00:00:00:03");
  restore("MacAddressStorage");
  EXPECT_EQ(store_.getWlanHwAddress(), "02:00:00:00:00:01");
  EXPECT_EQ(store_.macAddress("wlan0"), "02:00:00:00:00:02");
}

}  // namespace
}  // namespace lanternfold
