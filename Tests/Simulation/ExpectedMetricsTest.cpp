// The observers' own arithmetic, by hand.
#include <gtest/gtest.h>

#include "Tests/Simulation/BandwidthClassRule.h"
#include "Tests/Simulation/DataFileText.h"
#include "Tests/Simulation/ExpectedMetrics.h"
#include "Tests/Simulation/SimulatedMachine.h"

namespace lanternfold::simulation {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

RememberedInterface remembered(std::uint64_t original, std::uint64_t adjusted,
                               std::uint64_t truly) {
  return {.original = {.sentBytes = original},
          .adjusted = {.sentBytes = adjusted},
          .truth = TrueCounters{.incarnation = 1, .counters = {.sentBytes = truly}}};
}

ConnectionMetrics after(const RememberedInterface& before, std::uint64_t now) {
  return expectedInterface(&before, &before, {.sentBytes = now}, {}, Counting::capped).adjusted;
}

TEST(ExpectedMetricsTest, AWrapGainsOneLessThanTheWayAround) {
  EXPECT_EQ(after(remembered(4294967000, 5000, 0), 100).sentBytes, 5395U);
  EXPECT_EQ(after(remembered(1000, 5000, 0), 1000).sentBytes, 5000U);
  EXPECT_EQ(after(remembered(1000, 5000, 0), 999).sentBytes, std::uint64_t{5000} + 4294967294U);
}

TEST(ExpectedMetricsTest, LostAndDoubledTrafficIsSeen) {
  const auto before = remembered(100, 100, 100);
  EXPECT_EQ(trafficLost(before, remembered(150, 150, 150)), std::nullopt);
  EXPECT_EQ(trafficLost(before, remembered(150, 140, 150)),
            "sentBytes gained 40 where 50 went through");
  EXPECT_EQ(trafficLost(before, remembered(150, 200, 150)),
            "sentBytes gained 100 where 50 went through");
}

TEST(ExpectedMetricsTest, AWrapMayLoseOneByteAndNoMore) {
  const std::uint64_t turn = std::uint64_t{1} << 32;
  const auto before = remembered(turn - 10, 500, turn - 10);
  EXPECT_EQ(trafficLost(before, remembered(5, 514, turn + 5)), std::nullopt);
  EXPECT_NE(trafficLost(before, remembered(5, 515, turn + 5)), std::nullopt);
  EXPECT_NE(trafficLost(before, remembered(5, 513, turn + 5)), std::nullopt);
}

TEST(BandwidthClassRuleTest, ThresholdsBelongToTheClassAbove) {
  const auto classAt = [](std::uint64_t bytesPerSecond) {
    return expectedClass({}, {.recvBytes = bytesPerSecond * 2}, seconds(2));
  };
  EXPECT_EQ(classAt(499'999), 0);
  EXPECT_EQ(classAt(500'000), 10);
  EXPECT_EQ(classAt(6'250'000), 20);
  EXPECT_EQ(classAt(31'250'000), 30);
  EXPECT_EQ(expectedClass({.sentBytes = 9}, {.sentBytes = 8}, seconds(1)), 0);
  EXPECT_EQ(expectedClass({}, {.sentBytes = 1'000'000'000}, seconds(0)), 0);
}

TEST(DataFileTextTest, ReadsBothRecordsOfAnInterface) {
  const std::string record =
      R"({"sentBytes":1,"recvBytes":2,"sentError":3,"recvError":4,"sentPacket":5,)"
      R"("recvPacket":6,"collisions":7,"mtu":8})";
  const std::string text = R"([1,{"u\"s":)" + record + R"(},0,{"u\"s":)" + record + "}]";
  const auto read = readDataFileText(text);
  ASSERT_TRUE(read) << read.error();
  EXPECT_EQ(read->at("u\"s").adjusted.mtu, 8U);
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_FALSE(readDataFileText(text.substr(0, length))) << "cut at " << length;
  }
  EXPECT_FALSE(readDataFileText(text + " "));
  EXPECT_FALSE(readDataFileText(R"([0,{"en0":)" + record + "}]")) << "half of a pair";
  EXPECT_FALSE(readDataFileText(R"([0,{"en0":{"sentBytes":1}},1,{}])"));
}

TEST(SimulatedMachineTest, CountsTrafficWithoutLosingAByte) {
  SimulatedClock clock;
  SimulatedMachine machine(clock, SimulatedMachine::BootDate::remembered);
  machine.add("en0", ConnectionMetrics::initial(1500));
  machine.setRate("en0", {.sent = 3, .received = 1'000'000'000});
  for (int step = 0; step < 1000; ++step) {
    clock.advance(std::chrono::milliseconds(10));
    static_cast<void>(machine.read(false));
  }
  const auto reading = machine.read(true);
  EXPECT_EQ(reading->truth.at("en0").counters.sentBytes, 30U);
  EXPECT_EQ(reading->truth.at("en0").counters.recvBytes, 10'000'000'000U);
  EXPECT_EQ(reading->given.find("en0")->recvBytes, 10'000'000'000U % (std::uint64_t{1} << 32));
}

TEST(SimulatedMachineTest, ABootStartsCountersAnewAndMovesItsDate) {
  SimulatedClock clock;
  SimulatedMachine remembers(clock, SimulatedMachine::BootDate::remembered);
  SimulatedMachine follows(clock, SimulatedMachine::BootDate::followsWallClock);
  remembers.add("en0", {.sentBytes = 7, .mtu = 1500});
  clock.advance(hours(1));
  remembers.boot();
  follows.boot();
  const auto booted = clock.now();
  clock.advance(hours(1));
  clock.stepWallClock(hours(-5));
  EXPECT_EQ(remembers.lastBootDate(), booted);
  EXPECT_EQ(follows.lastBootDate(), booted - hours(5));
  EXPECT_EQ(*remembers.read(false)->given.find("en0"), ConnectionMetrics::initial(1500));
}

}  // namespace
}  // namespace lanternfold::simulation
