#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "PlatformLinux/Wifi/JoinedCellMemory.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

using Cells = JoinedCellMemory::Cells;

WifiInterfaceMessage joinedInterface() {
  WifiInterfaceMessage interface;
  interface.index = 5;
  interface.name = "wlan5";
  interface.interfaceType = NL80211_IFTYPE_STATION;
  interface.ssid = textOnly("cafe");
  interface.channel = {.frequencyMegahertz = 5220,
                       .width = NL80211_CHAN_WIDTH_80,
                       .center1Megahertz = 5210,
                       .center2Megahertz = std::nullopt};
  interface.transmitPowerMillibels = 2000;
  return interface;
}

Cells cellsOf(std::uint8_t last) {
  WifiBssMessage cell;
  cell.bssid = cellAddress(last);
  return {cell};
}

class JoinedCellMemoryTest : public testing::Test {
 protected:
  JoinedCellMemoryTest() { memory_.keep(interface_, cellsOf(1), memory_.begin()); }

  JoinedCellMemory memory_{[this] { return std::exchange(hasChanged_, false); }};
  WifiInterfaceMessage interface_ = joinedInterface();
  bool hasChanged_ = true;
};

TEST_F(JoinedCellMemoryTest, KeepsTheCellsWhileNothingChanges) {
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), cellsOf(1));
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), cellsOf(1));
}

TEST_F(JoinedCellMemoryTest, AReportedChangeForgetsThem) {
  hasChanged_ = true;
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), std::nullopt);
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), std::nullopt);
}

TEST_F(JoinedCellMemoryTest, AnotherDescriptionOfTheInterfaceIsAChange) {
  const auto reading = memory_.begin();
  auto renamed = interface_;
  renamed.ssid = textOnly("other");
  auto moved = interface_;
  moved.channel.frequencyMegahertz = 2437;
  auto narrower = interface_;
  narrower.channel.width = NL80211_CHAN_WIDTH_40;
  auto linked = interface_;
  linked.links.push_back({.linkId = 1, .channel = {}, .transmitPowerMillibels = {}});
  auto other = interface_;
  other.index = 6;
  for (const auto& changed : {renamed, moved, narrower, linked, other}) {
    EXPECT_EQ(memory_.cellsOf(changed, reading), std::nullopt);
  }
}

TEST_F(JoinedCellMemoryTest, AnotherPowerIsNone) {
  interface_.transmitPowerMillibels = 100;
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), cellsOf(1));
}

TEST_F(JoinedCellMemoryTest, ThatNoCellIsJoinedIsKeptAsWell) {
  const auto reading = memory_.begin();
  memory_.keep(interface_, {}, reading);
  EXPECT_EQ(memory_.cellsOf(interface_, reading), Cells());
}

TEST_F(JoinedCellMemoryTest, SeveralInterfacesAreKept) {
  auto other = interface_;
  other.index = 6;
  const auto reading = memory_.begin();
  memory_.keep(other, cellsOf(2), reading);
  EXPECT_EQ(memory_.cellsOf(interface_, reading), cellsOf(1));
  EXPECT_EQ(memory_.cellsOf(other, reading), cellsOf(2));
}

/// The answer was on its way when another thread heard that it is out of date.
TEST_F(JoinedCellMemoryTest, AnAnswerFromBeforeAChangeIsNotKept) {
  const auto slow = memory_.begin();
  hasChanged_ = true;
  const auto quick = memory_.begin();
  memory_.keep(interface_, cellsOf(1), slow);
  EXPECT_EQ(memory_.cellsOf(interface_, quick), std::nullopt);
  memory_.keep(interface_, cellsOf(2), quick);
  EXPECT_EQ(memory_.cellsOf(interface_, slow), std::nullopt);
  EXPECT_EQ(memory_.cellsOf(interface_, memory_.begin()), cellsOf(2));
}

TEST_F(JoinedCellMemoryTest, WithoutAWayToKnowNothingIsKept) {
  JoinedCellMemory memory{nullptr};
  const auto reading = memory.begin();
  memory.keep(interface_, cellsOf(1), reading);
  EXPECT_EQ(memory.cellsOf(interface_, reading), std::nullopt);
}

/// The kernel's list is the number of its changes; a reading may only be answered by a list that is
/// no older than its beginning.
TEST(JoinedCellMemoryOnThreads, NoReadingIsAnsweredByAnOlderList) {
  std::atomic<std::uint32_t> list{1};
  std::uint32_t told = 0;  // guarded by the memory, which asks one at a time
  JoinedCellMemory memory{[&] {
    const std::uint32_t now = list;
    return std::exchange(told, now) != now;
  }};
  const WifiInterfaceMessage interface = joinedInterface();
  std::atomic<int> outdated{0};
  const auto read = [&] {
    for (int count = 0; count < 3000; ++count) {
      const std::uint32_t before = list;
      const auto reading = memory.begin();
      auto kept = memory.cellsOf(interface, reading);
      if (!kept) {
        kept.emplace(1);
        kept->front().frequencyMegahertz = list;
        memory.keep(interface, *kept, reading);
      }
      if (kept->front().frequencyMegahertz < before) ++outdated;
      if (count % 50 == 0) ++list;
    }
  };
  std::thread one(read);
  std::thread other(read);
  one.join();
  other.join();
  EXPECT_EQ(outdated, 0);
}

}  // namespace
}  // namespace lanternfold::test
