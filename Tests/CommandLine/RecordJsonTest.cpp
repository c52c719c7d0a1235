#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/RecordJson.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using Category = NetworkSourceCategory;

const FakeStringTable english;

const std::string zeroMetrics = R"({"sentBytes":0,"recvBytes":0,"sentError":0,"recvError":0,)"
                                R"("sentPacket":0,"recvPacket":0,"collisions":0,"mtu":0})";
const std::string bareInterface =
    R"({"active":false,"displayName":"","metrics":)" + zeroMetrics +
    R"(,"name":"","type":"unknown","supportsIPv4":false,"IPv4":[],"supportsIPv6":false,)"
    R"("IPv6":[],"hwAddress":null})";

std::string interfaceJson(const BasicInterface& interface) {
  const std::string array = interfacesJson(std::vector{interface});
  return array.substr(1, array.size() - 2);
}

std::string stateOf(const std::string& text) {
  return nlohmann::ordered_json::parse(text).at("state").dump();
}

TEST(InterfacesJson, IsAnEmptyArrayWithoutInterfaces) { EXPECT_EQ(interfacesJson({}), "[]"); }

TEST(InterfacesJson, WritesABareInterface) { EXPECT_EQ(interfaceJson({}), bareInterface); }

TEST(InterfacesJson, WritesEveryFieldInOrder) {
  const BasicInterface interface{
      .active = true,
      .displayName = "Ethernet Adapter",
      .metrics = {.sentBytes = 1, .recvBytes = 2, .mtu = 1500},
      .name = "en2",
      .type = InterfaceType::ethernet,
      .supportsIPv4 = true,
      .IPv4 = {{.address = "192.168.0.9",
                .netmask = "255.255.255.0",
                .gateway = "192.168.0.1",
                .cidr = "192.168.0.1/24"}},
      .supportsIPv6 = true,
      .IPv6 = {{.address = "fe80::1", .prefix = 64, .gateway = "fe80::ff", .cidr = "fe80::/64"}},
      .hwAddress = "AB:CD:EF:12:34:57"};
  EXPECT_EQ(interfaceJson(interface),
            R"({"active":true,"displayName":"Ethernet Adapter",)"
            R"("metrics":{"sentBytes":1,"recvBytes":2,"sentError":0,"recvError":0,)"
            R"("sentPacket":0,"recvPacket":0,"collisions":0,"mtu":1500},)"
            R"("name":"en2","type":"ethernet","supportsIPv4":true,)"
            R"("IPv4":[{"address":"192.168.0.9","netmask":"255.255.255.0",)"
            R"("gateway":"192.168.0.1","cidr":"192.168.0.1/24"}],"supportsIPv6":true,)"
            R"("IPv6":[{"address":"fe80::1","prefix":64,"gateway":"fe80::ff",)"
            R"("cidr":"fe80::/64"}],"hwAddress":"AB:CD:EF:12:34:57"})");
}

TEST(InterfacesJson, KeepsTheOrderGiven) {
  const std::vector<BasicInterface> interfaces{{.name = "en5"}, {.name = "en0"}};
  const auto array = nlohmann::json::parse(interfacesJson(interfaces));
  ASSERT_EQ(array.size(), 2U);
  EXPECT_EQ(array[0]["name"], "en5");
  EXPECT_EQ(array[1]["name"], "en0");
}

TEST(InterfacesJson, NamesEveryTypeByItsCase) {
  std::string names;
  for (const auto type : {InterfaceType::wlan, InterfaceType::ethernet, InterfaceType::bluetooth,
                          InterfaceType::cellular, InterfaceType::unknown}) {
    names += nlohmann::json::parse(interfaceJson({.type = type}))["type"].get<std::string>() + " ";
  }
  EXPECT_EQ(names, "wlan ethernet bluetooth cellular unknown ");
}

TEST(InterfacesJson, WritesTheLargestCounterInFull) {
  const BasicInterface interface{
      .metrics = {.sentBytes = std::numeric_limits<std::uint64_t>::max()}};
  EXPECT_NE(interfaceJson(interface).find("\"sentBytes\":18446744073709551615,"),
            std::string::npos);
}

TEST(InterfacesJson, ReplacesTextThatIsNotUtf8) {
  const std::string text = interfaceJson({.displayName = "A\xFF\xC3(B", .name = "en\x80"});
  EXPECT_NE(text.find("\"displayName\":\"A\xEF\xBF\xBD\xEF\xBF\xBD(B\""), std::string::npos)
      << text;
  EXPECT_NE(text.find("\"name\":\"en\xEF\xBF\xBD\""), std::string::npos) << text;
}

TEST(InterfacesJson, EscapesQuotesAndControlCharactersAndStaysOnOneLine) {
  const std::string text = interfaceJson({.displayName = std::string("a\"\n\0\x1B[31m", 9)});
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_NE(text.find(R"("a\"\n\u0000\u001b[31m")"), std::string::npos) << text;
}

TEST(InterfacesJson, KeepsTextOutsideAsciiReadable) {
  EXPECT_NE(interfaceJson({.displayName = "Schnittstelle Büro"}).find("Büro"), std::string::npos);
}

TEST(StateJson, WritesTheInitialStateInFieldOrder) {
  EXPECT_EQ(stateJson(NetworkState::initial(english), Category::all(), false),
            R"({"complete":false,"state":{"internet":{"active":false,"displayName":"Internet",)"
            R"("ip":null,"supportsIPv6":null,"ipv6":null,"isp":null,"country":null,)"
            R"("interface":null,"dns":[],"metrics":)" +
                zeroMetrics +
                R"(},"wlan":{"active":true,"displayName":"Wi-Fi","mode":null,"interface":)" +
                R"({"active":false,"displayName":"Internet","metrics":)" + zeroMetrics +
                R"(,"name":"","type":"unknown","supportsIPv4":false,"IPv4":[],)"
                R"("supportsIPv6":false,"IPv6":[],"hwAddress":null},"currentNetwork":null},)"
                R"("cellular":null,"others":[],"cellularEnabled":false,"multipleSim":false}})");
}

TEST(StateJson, SaysWhetherItIsComplete) {
  const auto state = NetworkState::initial(english);
  EXPECT_TRUE(stateJson(state, Category::all(), true).starts_with(R"({"complete":true,"state":{)"));
  EXPECT_TRUE(stateJson(state, Category::all(), false).starts_with(R"({"complete":false,)"));
}

TEST(StateJson, WritesTheInternetOfThePlaceholder) {
  auto state = NetworkState::placeholder(true, english);
  state.internet.interface = BasicInterface{};
  state.internet.metrics = {};
  EXPECT_EQ(nlohmann::ordered_json::parse(stateJson(state, Category::all(), true))
                .at("state")
                .at("internet")
                .dump(),
            R"({"active":true,"displayName":"Internet","ip":"12.34.56.78","supportsIPv6":true,)"
            R"("ipv6":"2001:db8:0:0:1:0:0:ef","isp":"Your ISP Name","country":"IT","interface":)" +
                bareInterface + R"(,"dns":["8.8.8.8","8.8.4.4"],"metrics":)" + zeroMetrics + "}");
}

TEST(StateJson, WritesTheWifiOfThePlaceholder) {
  auto state = NetworkState::placeholder(true, english);
  state.wlan->mode = "station";
  state.wlan->interface = {};
  EXPECT_EQ(nlohmann::ordered_json::parse(stateJson(state, Category::wlan(), true))
                .at("state")
                .at("wlan")
                .dump(),
            R"({"active":true,"displayName":"Wi-Fi","mode":"station","interface":)" +
                bareInterface +
                R"(,"currentNetwork":{"ssid":"Home Network","bssid":"12:34:56:AB:CD:EF",)"
                R"("metrics":{"PHYMode":"802.11ac","countryCode":"IT",)"
                R"json("security":"WPA2 Personal","channel":"44 (5 GHz, 80 MHz)","rssi":-39,)json"
                R"("noise":-92,"transmitPower":1,"transmitRate":1300.0}}})");
}

TEST(StateJson, WritesEveryFieldOfTheCellularProviderInOrder) {
  const NetworkState state{
      .cellular = CellularProvider{.active = true,
                                   .displayName = "Cellular",
                                   .carriers = {{.name = "Blue",
                                                 .radioAccessTechnology = "LTE",
                                                 .allowsVOIP = true,
                                                 .countryCode = "IT",
                                                 .mcc = "222",
                                                 .mnc = "10"}},
                                   .dataCarrierIndex = 0,
                                   .interfaces = {BasicInterface{.name = "pdp_ip0"}},
                                   .metrics = oneToEight,
                                   .hotspotInterface = BasicInterface{.name = "bridge100"},
                                   .hotspotMetrics = ConnectionMetrics{}},
      .cellularEnabled = true,
      .multipleSim = true};
  EXPECT_EQ(stateOf(stateJson(state, Category::cellular(), true)),
            R"({"internet":null,"wlan":null,"cellular":{"active":true,"displayName":"Cellular",)"
            R"("carriers":[{"name":"Blue","radioAccessTechnology":"LTE","allowsVOIP":true,)"
            R"("countryCode":"IT","mcc":"222","mnc":"10"}],"dataCarrierIndex":0,"interfaces":[)" +
                interfaceJson({.name = "pdp_ip0"}) +
                R"(],"metrics":{"sentBytes":1,"recvBytes":2,"sentError":3,"recvError":4,)"
                R"("sentPacket":5,"recvPacket":6,"collisions":7,"mtu":8},"hotspotInterface":)" +
                interfaceJson({.name = "bridge100"}) + R"(,"hotspotMetrics":)" + zeroMetrics +
                R"(},"others":[],"cellularEnabled":true,"multipleSim":true})");
}

TEST(StateJson, WritesNullForWhatIsAbsentInTheCellularProvider) {
  const NetworkState state{.cellular = CellularProvider{.carriers = {{.name = "Blue"}}}};
  EXPECT_EQ(stateOf(stateJson(state, Category::cellular(), true)),
            R"({"internet":null,"wlan":null,"cellular":{"active":false,"displayName":"",)"
            R"("carriers":[{"name":"Blue","radioAccessTechnology":"","allowsVOIP":false,)"
            R"("countryCode":null,"mcc":null,"mnc":null}],"dataCarrierIndex":null,)"
            R"("interfaces":[],"metrics":)" +
                zeroMetrics +
                R"(,"hotspotInterface":null,"hotspotMetrics":null},"others":[],)"
                R"("cellularEnabled":false,"multipleSim":false})");
}

TEST(StateJson, WritesNullForCategoriesThatWereNotAskedFor) {
  const auto state = NetworkState::placeholder(true, english);
  EXPECT_EQ(stateOf(stateJson(state, {}, true)),
            R"({"internet":null,"wlan":null,"cellular":null,"others":[],)"
            R"("cellularEnabled":false,"multipleSim":false})");
}

TEST(StateJson, WritesOnlyTheOthersWhenOnlyTheyWereAskedFor) {
  const auto state = NetworkState::placeholder(true, english);
  EXPECT_EQ(stateOf(stateJson(state, Category::other(), true)),
            R"({"internet":null,"wlan":null,"cellular":null,"others":)" +
                interfacesJson(state.others) + R"(,"cellularEnabled":false,"multipleSim":false})");
}

TEST(StateJson, ReplacesNamesThatAreNotUtf8) {
  auto state = NetworkState::placeholder(true, english);
  state.wlan->currentNetwork->ssid = "caf\xE9";
  EXPECT_NE(stateJson(state, Category::wlan(), true).find("\"ssid\":\"caf\xEF\xBF\xBD\""),
            std::string::npos);
}

TEST(StateJson, WritesARateThatIsNotFiniteAsNull) {
  auto state = NetworkState::placeholder(true, english);
  state.wlan->currentNetwork->metrics->transmitRate = std::numeric_limits<double>::infinity();
  EXPECT_NE(stateJson(state, Category::wlan(), true).find("\"transmitRate\":null"),
            std::string::npos);
}

}  // namespace
}  // namespace lanternfold
