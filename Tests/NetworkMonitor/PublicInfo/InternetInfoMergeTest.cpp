#include "NetworkMonitor/PublicInfo/InternetInfoMerge.h"

namespace lanternfold {
namespace {

using enum PublicInfoKey;

InternetInfo merged(const PublicInfo& answer, InternetInfo info = {}) {
  merge(answer, info);
  return info;
}

TEST(InternetInfoMergeTest, EveryKeyHasItsField) {
  BasicInterface en0;
  en0.name = "en0";
  const InternetInfo info = merged({{ip, "203.0.113.7"},
                                    {ip6, "2001:db8::7"},
                                    {supportsIp6, true},
                                    {isp, "Example Net"},
                                    {country, "IT"},
                                    {interface, en0}});
  EXPECT_EQ(info.ip, "203.0.113.7");
  EXPECT_EQ(info.ipv6, "2001:db8::7");
  EXPECT_EQ(info.supportsIPv6, true);
  EXPECT_EQ(info.isp, "Example Net");
  EXPECT_EQ(info.country, "IT");
  EXPECT_EQ(info.interface, en0);
}

TEST(InternetInfoMergeTest, WhatIsNotAnsweredStaysAsItIs) {
  InternetInfo known;
  known.ip = "203.0.113.7";
  known.isp = "Example Net";
  InternetInfo expected = known;
  expected.isp = "Other Net";
  EXPECT_EQ(merged({}, known), known);
  EXPECT_EQ(merged({{isp, "Other Net"}}, known), expected);
}

TEST(InternetInfoMergeTest, AnIPv6AddressAloneMeansThatThereIsIPv6) {
  EXPECT_EQ(merged({{ip6, "2001:db8::7"}}).supportsIPv6, true);
}

TEST(InternetInfoMergeTest, ADenialOfSupportIsWritten) {
  EXPECT_EQ(merged({{supportsIp6, false}}).supportsIPv6, false);
}

TEST(InternetInfoMergeTest, SupportWithoutAnAddressIsNotBelieved) {
  EXPECT_EQ(merged({{supportsIp6, true}}).supportsIPv6, std::nullopt);
  EXPECT_EQ(merged({{supportsIp6, true}}, merged({{supportsIp6, false}})).supportsIPv6, false);
}

TEST(InternetInfoMergeTest, SupportIsBelievedWithAnEarlierAddress) {
  InternetInfo known;
  known.ipv6 = "2001:db8::7";
  EXPECT_EQ(merged({{supportsIp6, true}}, known).supportsIPv6, true);
}

TEST(InternetInfoMergeDeathTest, AValueOfAnotherKindStopsTheProgram) {
  const char* sentence = "a public-info resolver answered a value of another kind";
  EXPECT_DEATH(static_cast<void>(merged({{ip, true}})), sentence);
  EXPECT_DEATH(static_cast<void>(merged({{supportsIp6, "true"}})), sentence);
  EXPECT_DEATH(static_cast<void>(merged({{interface, "en0"}})), sentence);
}

}  // namespace
}  // namespace lanternfold
