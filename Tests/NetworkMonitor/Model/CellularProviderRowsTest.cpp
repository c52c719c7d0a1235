#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "NetworkMonitor/Model/CellularProvider.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SourceListText.h"

namespace lanternfold {
namespace {

std::string rowsOf(const CellularProvider& provider) {
  return sourceListText(provider.compressedListRepresentation(FakeStringTable()));
}

/// The rows with every text that was looked up between guillemets.
std::string bracketedRowsOf(const CellularProvider& provider) {
  return sourceListText(provider.compressedListRepresentation(BracketingStringTable()));
}

CellularProvider oneCarrier(bool allowsVOIP = true) {
  return {.carriers = {{.name = "Blue", .allowsVOIP = allowsVOIP}}};
}

CellularProvider twoCarriers() { return {.carriers = {{.name = "Blue"}, {.name = "Red"}}}; }

std::string hotspotRows(std::uint64_t sentBytes, std::uint64_t recvBytes) {
  return rowsOf(
      {.hotspotMetrics = ConnectionMetrics{.sentBytes = sentBytes, .recvBytes = recvBytes}});
}

TEST(CellularProviderRows, AreNoneWithoutCarriersAndHotspot) { EXPECT_EQ(rowsOf({}), ""); }

TEST(CellularProviderRows, ShowASingleCarrierWithoutNumberAndItsVoIP) {
  EXPECT_EQ(rowsOf(oneCarrier(true)), "Carrier / Blue\nVoIP / VoIP Enabled\n");
  EXPECT_EQ(rowsOf(oneCarrier(false)), "Carrier / Blue\nVoIP / VoIP Disabled\n");
}

TEST(CellularProviderRows, MarkASingleCarrierThatCarriesData) {
  auto provider = oneCarrier();
  provider.dataCarrierIndex = 0;
  EXPECT_EQ(rowsOf(provider), "Carrier, data / Blue\nVoIP / VoIP Enabled\n");
}

TEST(CellularProviderRows, NumberTwoCarriersAndMarkTheSecondThatCarriesData) {
  auto provider = twoCarriers();
  provider.dataCarrierIndex = 1;
  EXPECT_EQ(rowsOf(provider), "Carrier 1 / Blue !\nCarrier 2, data / Red !\n");
}

TEST(CellularProviderRows, MarkNoCarrierWhenTheIndexPointsOutside) {
  auto provider = twoCarriers();
  for (const std::int64_t outside :
       {std::int64_t{2}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
    provider.dataCarrierIndex = outside;
    EXPECT_EQ(rowsOf(provider), "Carrier 1 / Blue !\nCarrier 2 / Red !\n") << outside;
  }
}

TEST(CellularProviderRows, HaveNoVoIPWithTwoCarriers) {
  EXPECT_EQ(rowsOf(twoCarriers()).find("VoIP"), std::string::npos);
}

TEST(CellularProviderRows, ShowTheHotspotsBytesInSum) {
  EXPECT_EQ(hotspotRows(700'000, 500'000), "Hotspot / 1.2 MB !\n");
  EXPECT_EQ(hotspotRows(0, 1), "Hotspot / 1 byte !\n");
}

TEST(CellularProviderRows, ShowAnIdleHotspotAsZero) {
  EXPECT_EQ(hotspotRows(0, 0), "Hotspot / Zero KB !\n");
}

TEST(CellularProviderRows, ShowTheHotspotBehindCarriersAndVoIP) {
  auto provider = oneCarrier();
  provider.hotspotMetrics = ConnectionMetrics{.sentBytes = 5'000};
  EXPECT_EQ(rowsOf(provider), "Carrier / Blue\nVoIP / VoIP Enabled\nHotspot / 5 KB !\n");
}

TEST(CellularProviderRows, HaveNoHotspotRowForAnInterfaceWithoutCounters) {
  EXPECT_EQ(rowsOf({.hotspotInterface = BasicInterface{.name = "bridge100"}}), "");
}

TEST(CellularProviderRows, ShowTheLargestSumOfHotspotBytes) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(hotspotRows(largest - 1, 1), "Hotspot / 18.45 EB !\n");
}

TEST(CellularProviderRowsDeathTest, StopTheProgramWhenTheHotspotsBytesOverflow) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_DEATH(hotspotRows(largest, 1), "Fatal error: a sum of counters exceeds");
}

TEST(CellularProviderRows, LookUpEveryFixedTextOfOneCarrierButNotItsName) {
  auto provider = oneCarrier(true);
  provider.dataCarrierIndex = 0;
  EXPECT_EQ(bracketedRowsOf(provider), "«Carrier», «data» / Blue\n«VoIP» / «VoIP Enabled»\n");
  EXPECT_EQ(bracketedRowsOf(oneCarrier(false)), "«Carrier» / Blue\n«VoIP» / «VoIP Disabled»\n");
}

TEST(CellularProviderRows, LookUpEveryFixedTextOfTwoCarriersButNotTheirNames) {
  auto provider = twoCarriers();
  provider.dataCarrierIndex = 1;
  EXPECT_EQ(bracketedRowsOf(provider), "«Carrier» 1 / Blue !\n«Carrier» 2, «data» / Red !\n");
}

TEST(CellularProviderRows, LookUpTheHotspotsLabelAndEveryWordOfItsBytes) {
  const auto rowsOfHotspot = [](std::uint64_t bytes) {
    return bracketedRowsOf({.hotspotMetrics = ConnectionMetrics{.sentBytes = bytes}});
  };
  EXPECT_EQ(rowsOfHotspot(0), "«Hotspot» / «Zero» «KB» !\n");
  EXPECT_EQ(rowsOfHotspot(1), "«Hotspot» / 1 «byte» !\n");
  EXPECT_EQ(rowsOfHotspot(999), "«Hotspot» / 999 «bytes» !\n");
  EXPECT_EQ(rowsOfHotspot(5'000), "«Hotspot» / 5 «KB» !\n");
  EXPECT_EQ(rowsOfHotspot(1'200'000), "«Hotspot» / 1.2 «MB» !\n");
}

TEST(CellularProviderRows, HaveNoLongList) {
  EXPECT_TRUE(oneCarrier().listRepresentation(FakeStringTable()).empty());
}

}  // namespace
}  // namespace lanternfold
