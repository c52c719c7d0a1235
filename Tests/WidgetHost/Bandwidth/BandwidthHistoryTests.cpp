#include <chrono>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "WidgetHost/Bandwidth/BandwidthHistory.h"

namespace lanternfold {
namespace {

using std::chrono::milliseconds;
using Rate = std::optional<TrafficRate>;
using enum ConnectionBandwidthClass;

ConnectionMetricsMap reading(std::uint64_t received, std::uint64_t sent = 0) {
  return ConnectionMetricsMap::of(
      {{"en0", {.sentBytes = sent, .recvBytes = received, .mtu = 1500}}});
}

Rate rate(double received, double sent = 0) {
  return TrafficRate{.received = received, .sent = sent};
}

/// The newest seconds of en0, the last one last.
std::vector<Rate> newest(const BandwidthHistory& history, std::size_t count) {
  const TrafficMinute minute = history.trafficOf("en0").minute;
  return {minute.end() - static_cast<std::ptrdiff_t>(count), minute.end()};
}

class BandwidthHistoryTest : public testing::Test {
 protected:
  BandwidthHistoryTest() { history_.watch({"en0"}); }

  /// At so many milliseconds.
  static BandwidthHistory::TimePoint at(int time) {
    return BandwidthHistory::TimePoint(milliseconds(time));
  }

  StandardConnectionBandwidthAnalyzer analyzer_;
  BandwidthHistory history_{analyzer_, false};
};

TEST_F(BandwidthHistoryTest, KnowsNothingBeforeTheFirstReading) {
  EXPECT_EQ(history_.trafficOf("en0"), AdapterTraffic{});
}

TEST_F(BandwidthHistoryTest, TheFirstReadingHasTotalsAndNoRate) {
  history_.add(at(5000), reading(700, 70));
  const AdapterTraffic traffic = history_.trafficOf("en0");
  EXPECT_EQ(traffic.totals->recvBytes, 700U);
  EXPECT_EQ(traffic.now(), std::nullopt);
  EXPECT_EQ(traffic.bandwidthClass, std::nullopt);
}

TEST_F(BandwidthHistoryTest, ARateIsWhatWentThroughInTheTimeThatPassed) {
  history_.add(at(0), reading(1000, 100));
  history_.add(at(1000), reading(3000, 150));
  history_.add(at(2250), reading(8000, 150));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{{}, rate(2000, 50), rate(4000, 0)}));
}

TEST_F(BandwidthHistoryTest, ReadingsThatComeALittleLateOrEarlyKeepTheirSecond) {
  history_.add(at(0), reading(0));
  history_.add(at(1375), reading(1375));
  history_.add(at(1625), reading(1625));
  history_.add(at(3375), reading(3375));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{rate(1000), rate(1000), rate(1000)}));
}

TEST_F(BandwidthHistoryTest, TwoReadingsInOneSecondCountWithTheNext) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(1000));
  history_.add(at(1300), reading(9000));
  EXPECT_EQ(newest(history_, 2), (std::vector<Rate>{{}, rate(1000)}));
  history_.add(at(2000), reading(9000));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{{}, rate(1000), rate(8000)}));
}

TEST_F(BandwidthHistoryTest, AMissedSecondIsAGapAndTheNextOneTheMeanSince) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(1000));
  history_.add(at(4000), reading(7000));
  EXPECT_EQ(newest(history_, 5), (std::vector<Rate>{{}, rate(1000), {}, {}, rate(2000)}));
}

TEST_F(BandwidthHistoryTest, OldSecondsLeaveTheMinute) {
  for (int second = 0; second <= 61; ++second) {
    history_.add(at(second * 1000), reading(static_cast<std::uint64_t>(second * second)));
  }
  const TrafficMinute minute = history_.trafficOf("en0").minute;
  EXPECT_EQ(minute.front(), rate(3));
  EXPECT_EQ(minute.back(), rate(121));
}

TEST_F(BandwidthHistoryTest, AMinuteWithoutReadingsLeavesNothing) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(1000));
  history_.add(at(3'600'000), reading(5'000'000));
  EXPECT_EQ(history_.trafficOf("en0").minute, TrafficMinute{});
  history_.add(at(3'601'000), reading(5'000'300));
  EXPECT_EQ(newest(history_, 2), (std::vector<Rate>{{}, rate(300)}));
}

TEST_F(BandwidthHistoryTest, CountersThatGoBackHaveBeenReset) {
  history_.add(at(0), reading(9000, 9000));
  history_.add(at(1000), reading(10'000, 10'000));
  history_.add(at(2000), reading(10'500, 500));
  history_.add(at(3000), reading(10'600, 700));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{rate(1000, 1000), {}, rate(100, 200)}));
  EXPECT_EQ(history_.trafficOf("en0").totals->sentBytes, 700U);
}

TEST_F(BandwidthHistoryTest, AnAdapterThatIsGoneAndBackBeginsAnew) {
  history_.add(at(0), reading(1000));
  history_.add(at(1000), reading(2000));
  history_.add(at(2000), {});
  EXPECT_EQ(history_.trafficOf("en0").totals, std::nullopt);
  EXPECT_EQ(history_.trafficOf("en0").bandwidthClass, std::nullopt);
  history_.add(at(3000), reading(90'000));
  history_.add(at(4000), reading(90'010));
  EXPECT_EQ(newest(history_, 4), (std::vector<Rate>{rate(1000), {}, {}, rate(10)}));
}

TEST_F(BandwidthHistoryTest, AReadingThatFailedIsAGap) {
  history_.add(at(0), reading(1000));
  history_.addFailure(at(1000));
  history_.add(at(2000), reading(5000));
  history_.add(at(3000), reading(5100));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{{}, {}, rate(100)}));
}

TEST_F(BandwidthHistoryTest, AnAdapterThatIsWatchedLaterBeginsWithTheLastReading) {
  history_.add(at(0), ConnectionMetricsMap::of({{"en0", {.recvBytes = 1}}, {"en1", {}}}));
  history_.watch({"en0", "en1"});
  EXPECT_EQ(history_.trafficOf("en1").totals, ConnectionMetrics{});
  history_.add(at(1000),
               ConnectionMetricsMap::of({{"en0", {.recvBytes = 5}}, {"en1", {.recvBytes = 40}}}));
  EXPECT_EQ(history_.trafficOf("en0").now(), rate(4));
  EXPECT_EQ(history_.trafficOf("en1").now(), rate(40));
}

TEST_F(BandwidthHistoryTest, WhatIsNotWatchedIsForgotten) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(1000));
  history_.watch({});
  EXPECT_EQ(history_.trafficOf("en0"), AdapterTraffic{});
  history_.watch({"en0"});
  EXPECT_EQ(history_.trafficOf("en0").minute, TrafficMinute{});
}

TEST_F(BandwidthHistoryTest, WhatHappensWhileInterruptedIsNotMeasured) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(1000));
  history_.interrupt();
  EXPECT_EQ(history_.trafficOf("en0").now(), rate(1000)) << "what was measured stays";
  history_.add(at(2000), reading(8'000'000));
  history_.add(at(3000), reading(8'000'500));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{rate(1000), {}, rate(500)}));
}

// Ticks that begin anew in the middle of a second were once counted to one and then to the other.
TEST_F(BandwidthHistoryTest, SecondsAreCountedAnewAfterAnInterruption) {
  history_.add(at(0), reading(0));
  history_.interrupt();
  history_.add(at(3500), reading(0));
  history_.add(at(4499), reading(999));
  history_.add(at(5501), reading(2001));
  history_.add(at(6499), reading(2999));
  EXPECT_EQ(newest(history_, 4), (std::vector<Rate>{{}, rate(1000), rate(1000), rate(1000)}));
}

TEST_F(BandwidthHistoryTest, AnInterruptionWithinASecondIsASecond) {
  history_.add(at(0), reading(0));
  history_.add(at(1000), reading(10));
  history_.interrupt();
  history_.add(at(1100), reading(20));
  history_.add(at(2100), reading(30));
  EXPECT_EQ(newest(history_, 3), (std::vector<Rate>{rate(10), {}, rate(10)}));
}

TEST_F(BandwidthHistoryTest, AnAdapterWatchedAfterAnInterruptionDoesNotBeginBeforeIt) {
  history_.watch({});
  history_.add(at(0), reading(0));
  history_.interrupt();
  history_.watch({"en0"});
  history_.add(at(1000), reading(50'000));
  EXPECT_EQ(history_.trafficOf("en0").now(), std::nullopt);
}

TEST_F(BandwidthHistoryTest, TheClassIsThatOfTheLastTenSecondsTogether) {
  std::uint64_t received = 0;
  int second = 0;
  const auto pass = [&](std::uint64_t bytes) {
    history_.add(at(1000 * second++), reading(received += bytes));
    return history_.trafficOf("en0").bandwidthClass;
  };
  EXPECT_EQ(pass(0), std::nullopt);
  EXPECT_EQ(pass(62'500'000), veryHigh) << "of the only second";
  for (int count = 0; count < 4; ++count) pass(0);
  EXPECT_EQ(pass(0), high) << "62.5 MB in six seconds";
  for (int count = 0; count < 3; ++count) pass(0);
  EXPECT_EQ(pass(0), high) << "62.5 MB in ten seconds";
  EXPECT_EQ(pass(0), idle) << "nothing in ten seconds";
}

TEST_F(BandwidthHistoryTest, TheClassIsThatOfTheBusierDirection) {
  history_.add(at(0), reading(0, 0));
  history_.add(at(1000), reading(100, 40'000'000));
  EXPECT_EQ(history_.trafficOf("en0").bandwidthClass, veryHigh);
}

TEST_F(BandwidthHistoryTest, TenGigabitsASecondAreMeasuredExactly) {
  constexpr std::uint64_t perSecond = 1'250'000'000;
  history_.add(at(0), reading(1'000'000'000'000'000, 0));
  history_.add(at(1000), reading(1'000'000'000'000'000 + perSecond, perSecond));
  EXPECT_EQ(newest(history_, 1), (std::vector<Rate>{rate(1.25e9, 1.25e9)}));
}

TEST_F(BandwidthHistoryTest, CountersAtTheEndOfTheirRangeDoNotOverflow) {
  constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  history_.add(at(0), reading(0, largest - 1));
  history_.add(at(1000), reading(largest, largest));
  EXPECT_EQ(newest(history_, 1), (std::vector<Rate>{rate(static_cast<double>(largest), 1)}));
  history_.add(at(2000), reading(5, 5));
  EXPECT_EQ(newest(history_, 1), (std::vector<Rate>{{}}));
}

TEST_F(BandwidthHistoryTest, CountersOf32BitsAreCarriedForward) {
  BandwidthHistory capped(analyzer_, true);
  capped.watch({"en0"});
  capped.add(at(0), reading(4'294'967'000));
  capped.add(at(1000), reading(100));
  EXPECT_EQ(newest(capped, 1), (std::vector<Rate>{rate(395)}));
  EXPECT_EQ(capped.trafficOf("en0").totals->recvBytes, 4'294'967'395U);
  capped.add(at(2000), reading(200));
  EXPECT_EQ(newest(capped, 1), (std::vector<Rate>{rate(100)}));
  capped.add(at(3000), {});
  capped.add(at(4000), reading(50));
  EXPECT_EQ(newest(capped, 1), (std::vector<Rate>{{}})) << "a new adapter has not wrapped";
}

}  // namespace
}  // namespace lanternfold
