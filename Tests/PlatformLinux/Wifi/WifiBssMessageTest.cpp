#include "PlatformLinux/Wifi/WifiBssMessage.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

const Bytes bssid = attribute(NL80211_BSS_BSSID, bytesOf(cellAddress(1)));
const Bytes associated = number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_ASSOCIATED);

Bytes scanAnswer(std::initializer_list<Bytes> figures) {
  return wifiPayload(NL80211_CMD_NEW_SCAN_RESULTS,
                     {number32(NL80211_ATTR_IFINDEX, 5), nested(NL80211_ATTR_BSS, figures)});
}

Bytes latest(const Bytes& elements) {
  return attribute(NL80211_BSS_INFORMATION_ELEMENTS, elements);
}
Bytes beacon(const Bytes& elements) { return attribute(NL80211_BSS_BEACON_IES, elements); }

auto decoded(const Bytes& payload) { return decodeJoinedBss(payloadMessage(nl80211Type, payload)); }

Bytes wholeAnswer() {
  return scanAnswer({bssid, number32(NL80211_BSS_FREQUENCY, 5220),
                     number16(NL80211_BSS_CAPABILITY, 0x0011),
                     latest(joined({element(0, textOnly("cafe")), element(48, rsnBody({2}))})),
                     number32(NL80211_BSS_SIGNAL_MBM, -3050), number8(NL80211_BSS_MLO_LINK_ID, 2),
                     attribute(NL80211_BSS_MLD_ADDR, bytesOf(cellAddress(7))), associated});
}

TEST(WifiBssMessage, TellsEverythingOfTheJoinedCell) {
  const auto bss = decoded(wholeAnswer()).value().value();
  EXPECT_EQ(bss.bssid, cellAddress(1));
  EXPECT_EQ(bss.frequencyMegahertz, 5220U);
  EXPECT_EQ(bss.signalMillibels, -3050);
  EXPECT_TRUE(bss.hasPrivacy);
  EXPECT_EQ(bss.elements.ssid, textOnly("cafe"));
  EXPECT_TRUE(bss.elements.rsn);
  EXPECT_EQ(bss.linkId, 2);
  EXPECT_EQ(bss.peerAddress, cellAddress(7));
}

TEST(WifiBssMessage, OnlyAJoinedCellCounts) {
  EXPECT_TRUE(decoded(scanAnswer({bssid, associated})).value());
  EXPECT_TRUE(
      decoded(scanAnswer({bssid, number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_IBSS_JOINED)}))
          .value());
  EXPECT_FALSE(decoded(scanAnswer({bssid})).value());
  EXPECT_FALSE(
      decoded(scanAnswer({bssid, number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_AUTHENTICATED)}))
          .value());
}

TEST(WifiBssMessage, TheBeaconStandsInForOtherElements) {
  const Bytes ofBeacon = beacon(joined({element(0, textOnly("cafe")), element(48, rsnBody({8}))}));
  EXPECT_EQ(decoded(scanAnswer({bssid, associated, ofBeacon}))->value().elements.ssid,
            textOnly("cafe"));
  EXPECT_TRUE(decoded(scanAnswer({bssid, associated, latest({}), ofBeacon}))->value().elements.rsn);
}

TEST(WifiBssMessage, AHiddenNameIsThatOfTheBeaconWhereThatHasOne) {
  const Bytes named = beacon(element(0, textOnly("cafe")));
  for (const Bytes& hidden : {element(0, {}), element(0, Bytes(4))}) {
    const auto bss = decoded(scanAnswer({bssid, associated, latest(hidden), named}))->value();
    EXPECT_EQ(bss.elements.ssid, textOnly("cafe"));
    const auto without =
        decoded(scanAnswer({bssid, associated, latest(hidden), beacon(hidden)}))->value();
    EXPECT_FALSE(tellsName(without.elements));
  }
}

TEST(WifiBssMessage, ANetworkWithoutPrivacyAndFiguresIsJoinedAsWell) {
  const auto bss = decoded(scanAnswer({bssid, associated}))->value();
  EXPECT_FALSE(bss.hasPrivacy);
  EXPECT_EQ(bss.signalMillibels, std::nullopt);
  EXPECT_EQ(bss.elements, InformationElements{});
}

TEST(WifiBssMessage, WhatIsWrongIsNamed) {
  using enum DecodeProblem;
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {truncated, "genlmsghdr"}},
      {wifiPayload(NL80211_CMD_NEW_SCAN_RESULTS, {}), {missing, "NL80211_ATTR_BSS"}},
      {scanAnswer({associated}), {missing, "NL80211_BSS_BSSID"}},
      {scanAnswer({bssid, bssid}), {duplicate, "NL80211_BSS_BSSID"}},
      {scanAnswer({attribute(NL80211_BSS_BSSID, Bytes(7))}), {wrongSize, "NL80211_BSS_BSSID"}},
      {scanAnswer({bssid, associated, number8(NL80211_BSS_MLO_LINK_ID, 15)}),
       {badValue, "NL80211_BSS_MLO_LINK_ID"}},
  };
  for (const auto& [payload, error] : cases) {
    const auto bss = decoded(payload);
    ASSERT_FALSE(bss) << description(error);
    EXPECT_EQ(bss.error(), error) << description(bss.error());
  }
}

TEST(WifiBssMessage, ABadFigureDoesNotTakeTheCellWithIt) {
  for (const Bytes& bad : {number8(NL80211_BSS_SIGNAL_MBM, 1), number8(NL80211_BSS_FREQUENCY, 1)}) {
    const auto bss = decoded(scanAnswer({bad, bssid, associated}))->value();
    EXPECT_EQ(bss.bssid, cellAddress(1));
    EXPECT_EQ(bss.signalMillibels, std::nullopt);
    EXPECT_EQ(bss.frequencyMegahertz, std::nullopt);
  }
}

TEST(WifiBssMessage, ACellWhoseProtectionIsIllegibleIsNoOpenOne) {
  EXPECT_EQ(decoded(scanAnswer({bssid, associated, number8(NL80211_BSS_CAPABILITY, 0)})).error(),
            (DecodeError{DecodeProblem::wrongSize, "NL80211_BSS_CAPABILITY"}));
}

TEST(WifiBssMessage, NestedTooDeepIsNotFollowed) {
  Bytes deep = joined({bssid, associated});
  for (int level = 0; level < 1000; ++level) deep = attribute(NL80211_ATTR_BSS, deep);
  EXPECT_EQ(decoded(scanAnswer({bssid, deep})).value(), std::nullopt);
  EXPECT_EQ(decoded(scanAnswer({deep})).error(),
            (DecodeError{DecodeProblem::missing, "NL80211_BSS_BSSID"}));
}

TEST(WifiBssMessage, CutAnywhereItIsAnError) {
  forEveryCut(wholeAnswer(),
              [](const Bytes& bytes) { EXPECT_FALSE(decoded(bytes)) << bytes.size(); });
}

}  // namespace
}  // namespace lanternfold::test
