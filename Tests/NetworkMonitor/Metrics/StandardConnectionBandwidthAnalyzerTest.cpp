#include <limits>

#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"

namespace lanternfold {
namespace {

using enum ConnectionBandwidthClass;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

class StandardConnectionBandwidthAnalyzerTest : public testing::Test {
 protected:
  [[nodiscard]] ConnectionBandwidthClass evaluate(const ConnectionMetrics& oldMetrics,
                                                  const ConnectionMetrics& newMetrics,
                                                  double seconds) const {
    return analyzer.evaluate(oldMetrics, newMetrics, std::chrono::duration<double>(seconds));
  }
  /// Of `bytes` sent, and then of as many received.
  [[nodiscard]] std::string classesOf(std::uint64_t bytes, double seconds) const {
    const auto sent = evaluate({.sentBytes = 7}, {.sentBytes = 7 + bytes}, seconds);
    const auto received = evaluate({.recvBytes = 7}, {.recvBytes = 7 + bytes}, seconds);
    return std::string(nameOf(sent)) + " " + std::string(nameOf(received));
  }

  StandardConnectionBandwidthAnalyzer analyzer;
};

TEST_F(StandardConnectionBandwidthAnalyzerTest, Defaults) {
  EXPECT_EQ(analyzer.idleTheshold, 500'000U);
  EXPECT_EQ(analyzer.highSpeedTheshold, 6'250'000U);
  EXPECT_EQ(analyzer.veryHighSpeedTheshold, 31'250'000U);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, IntervalOfZeroIsIdle) {
  EXPECT_EQ(evaluate({.sentBytes = 1000}, {.sentBytes = 4000}, 0), idle);
  EXPECT_EQ(classesOf(1'000'000'000, 0), "idle idle");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, NegativeIntervalIsIdle) {
  EXPECT_EQ(classesOf(1'000'000'000, -1), "idle idle");
  EXPECT_EQ(classesOf(1'000'000'000, -infinite), "idle idle");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, IntervalThatIsNoNumberIsIdle) {
  EXPECT_EQ(classesOf(1'000'000'000, std::numeric_limits<double>::quiet_NaN()), "idle idle");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, NewSmallerThanOldIsIdle) {
  EXPECT_EQ(evaluate({.sentBytes = 4000, .recvBytes = largest}, {.sentBytes = 3999}, 0.000001),
            idle);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, MillionBytesInTwoSecondsIsLow) {
  EXPECT_EQ(classesOf(1'000'000, 2), "low low");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, RateBelowAThresholdBelongsToTheClassBelow) {
  EXPECT_EQ(classesOf(0, 1), "idle idle");
  EXPECT_EQ(classesOf(499'999, 1), "idle idle");
  EXPECT_EQ(classesOf(500'000, 1), "low low");
  EXPECT_EQ(classesOf(6'249'999, 1), "low low");
  EXPECT_EQ(classesOf(6'250'000, 1), "high high");
  EXPECT_EQ(classesOf(31'249'999, 1), "high high");
  EXPECT_EQ(classesOf(31'250'000, 1), "veryHigh veryHigh");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, RateIsTruncated) {
  EXPECT_EQ(classesOf(999'999, 2), "idle idle") << "499,999.5 bytes per second";
  EXPECT_EQ(classesOf(62'499'999, 2), "high high") << "31,249,999.5 bytes per second";
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, RateBeyondTheRangeIsVeryHigh) {
  EXPECT_EQ(evaluate({}, {.sentBytes = largest}, 1e-9), veryHigh);
  EXPECT_EQ(evaluate({}, {.recvBytes = largest}, 1), veryHigh);
  EXPECT_EQ(evaluate({}, {.recvBytes = 1}, std::numeric_limits<double>::denorm_min()), veryHigh);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, EndlessIntervalIsIdle) {
  EXPECT_EQ(evaluate({}, {.sentBytes = largest}, infinite), idle);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, SentVeryHighWithReceivedIdleIsVeryHigh) {
  EXPECT_EQ(evaluate({}, {.sentBytes = 31'250'000, .recvBytes = 1}, 1), veryHigh);
  EXPECT_EQ(evaluate({}, {.sentBytes = 1, .recvBytes = 31'250'000}, 1), veryHigh);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, DirectionThatWentBackLeavesTheOther) {
  EXPECT_EQ(evaluate({.sentBytes = 9}, {.sentBytes = 8, .recvBytes = 6'250'000}, 1), high);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, DirectionsAreNeverSummed) {
  EXPECT_EQ(evaluate({}, {.sentBytes = 499'999, .recvBytes = 499'999}, 1), idle);
  EXPECT_EQ(evaluate({}, {.sentBytes = 31'249'999, .recvBytes = 31'249'999}, 1), high);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, OtherCountersPlayNoPart) {
  EXPECT_EQ(evaluate({.sentPacket = 100},
                     {.sentError = largest,
                      .recvError = largest,
                      .sentPacket = 1,
                      .recvPacket = largest,
                      .collisions = largest,
                      .mtu = 1500},
                     1),
            idle);
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, ThresholdsMayBeOthers) {
  analyzer.idleTheshold = 10;
  analyzer.highSpeedTheshold = 20;
  analyzer.veryHighSpeedTheshold = 30;
  EXPECT_EQ(classesOf(9, 1), "idle idle");
  EXPECT_EQ(classesOf(10, 1), "low low");
  EXPECT_EQ(classesOf(20, 1), "high high");
  EXPECT_EQ(classesOf(30, 1), "veryHigh veryHigh");
}

TEST_F(StandardConnectionBandwidthAnalyzerTest, ConstructorTakesThemFromIdleToVeryHigh) {
  const StandardConnectionBandwidthAnalyzer other(1, 2, 3);
  EXPECT_EQ(other.idleTheshold, 1U);
  EXPECT_EQ(other.highSpeedTheshold, 2U);
  EXPECT_EQ(other.veryHighSpeedTheshold, 3U);
}

}  // namespace
}  // namespace lanternfold
