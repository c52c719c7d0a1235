#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"

namespace lanternfold {
namespace {

BasicInterface adapter(std::string name, InterfaceType type, bool active, bool hasAddress) {
  BasicInterface interface = sampleInterface(std::move(name));
  interface.type = type;
  interface.active = active;
  if (!hasAddress) interface.IPv4.clear();
  return interface;
}

constexpr auto wired = InterfaceType::ethernet;
constexpr auto wifi = InterfaceType::wlan;

AdapterConfigurationIntent choosing(std::optional<std::string> identifier) {
  return {NetworkAdapter{std::move(identifier), "An adapter", {}}, {}};
}

std::string bestName(const std::vector<BasicInterface>& interfaces,
                     const std::vector<std::string>& preferred = {}) {
  const BasicInterface* best = bestAdapter(interfaces, preferred);
  return best ? best->name : "none";
}

std::string chosenName(const AdapterConfigurationIntent& configuration,
                       const std::vector<BasicInterface>& interfaces) {
  const AdapterChoice choice = chooseAdapter(configuration, interfaces, {});
  if (const auto* missing = std::get_if<MissingAdapter>(&choice)) return "missing " + missing->name;
  if (const auto* interface = std::get_if<BasicInterface>(&choice)) return interface->name;
  return "none";
}

TEST(AdapterChoice, ShowsTheAdapterOfTheConfiguration) {
  EXPECT_EQ(chosenName(choosing("eth1"), {sampleInterface("eth0"), sampleInterface("eth1")}),
            "eth1");
}

TEST(AdapterChoice, NeverShowsAnotherAdapterInPlaceOfOneThatHasGone) {
  EXPECT_EQ(chosenName(choosing("eth7"), {sampleInterface("eth0")}), "missing eth7");
  EXPECT_EQ(chosenName(choosing("eth7"), {}), "missing eth7");
}

TEST(AdapterChoice, IsAutomaticForAuto) {
  EXPECT_EQ(chosenName(choosing("auto"), {sampleInterface("eth0")}), "eth0");
}

TEST(AdapterChoice, IsAutomaticWithoutAdapterOrIdentifier) {
  EXPECT_EQ(chosenName({}, {sampleInterface("eth0")}), "eth0");
  EXPECT_EQ(chosenName(choosing(std::nullopt), {sampleInterface("eth0")}), "eth0");
}

TEST(AdapterChoice, OfAStateWithoutAdaptersIsNone) {
  EXPECT_EQ(chosenName({}, {}), "none");
  EXPECT_EQ(bestName({}), "none");
}

TEST(BestAdapter, CarriesTheBestDefaultRoute) {
  EXPECT_EQ(bestName({adapter("eth0", wired, true, true), adapter("wlan0", wifi, true, true)},
                     {"tun0", "wlan0", "eth0"}),
            "wlan0");
}

TEST(BestAdapter, IsElseActiveWithAnIPv4Address) {
  EXPECT_EQ(bestName({adapter("eth0", wired, false, true), adapter("eth1", wired, true, false),
                      adapter("wlan0", wifi, true, true)}),
            "wlan0");
}

TEST(BestAdapter, IsElseActive) {
  EXPECT_EQ(bestName({adapter("eth0", wired, false, true), adapter("wlan0", wifi, true, false)}),
            "wlan0");
}

TEST(BestAdapter, IsElseTheFirst) {
  EXPECT_EQ(bestName({adapter("wlan0", wifi, false, false), adapter("eth1", wired, false, false)}),
            "eth1");
}

TEST(BestAdapter, IsWiredBeforeWifiBeforeTheRestThenByName) {
  const BasicInterface other = adapter("aaa0", InterfaceType::unknown, true, true);
  const BasicInterface wireless = adapter("bbb0", wifi, true, true);
  EXPECT_EQ(bestName({other, wireless}), "bbb0");
  EXPECT_EQ(bestName({other, wireless, adapter("eth1", wired, true, true),
                      adapter("eth0", wired, true, true)}),
            "eth0");
}

}  // namespace
}  // namespace lanternfold
