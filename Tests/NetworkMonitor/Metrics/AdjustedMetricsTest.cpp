#include <limits>

#include "NetworkMonitor/Metrics/AdjustedMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

constexpr std::uint64_t largest32 = 4'294'967'295;
constexpr std::uint64_t largest64 = std::numeric_limits<std::uint64_t>::max();

/// The adjusted value of one counter.
std::uint64_t adjusted(std::uint64_t current, std::uint64_t original, std::uint64_t base) {
  return carriedForward({.sentBytes = current}, ConnectionMetrics{.sentBytes = original},
                        ConnectionMetrics{.sentBytes = base})
      .sentBytes;
}

TEST(AdjustedMetricsTest, CounterThatGrewAddsTheDifference) {
  EXPECT_EQ(adjusted(1500, 1000, 7000), 7500U);
}

TEST(AdjustedMetricsTest, CounterThatStayedAddsNothing) {
  EXPECT_EQ(adjusted(1000, 1000, 7000), 7000U);
  EXPECT_EQ(adjusted(largest32, largest32, 1), 1U);
}

TEST(AdjustedMetricsTest, WrapFrom4294967000To100Adds395) {
  EXPECT_EQ(adjusted(100, 4'294'967'000, 10'000), 10'395U);
}

TEST(AdjustedMetricsTest, WrapAdds4294967295AndNotOneMore) {
  EXPECT_EQ(adjusted(0, largest32, 50), 50U);
  EXPECT_EQ(adjusted(0, 1, 50), 50U + largest32 - 1);
  EXPECT_EQ(adjusted(largest32 - 1, largest32, 0), largest32 - 1);
}

TEST(AdjustedMetricsTest, WithoutAnEarlierSampleTheCountersAreThoseRead) {
  EXPECT_EQ(carriedForward(oneToEight, std::nullopt, std::nullopt), oneToEight);
}

TEST(AdjustedMetricsTest, MissingOriginalCountsAsZero) {
  EXPECT_EQ(carriedForward({.recvBytes = 30}, std::nullopt, ConnectionMetrics{.recvBytes = 5}),
            (ConnectionMetrics{.recvBytes = 35}));
}

TEST(AdjustedMetricsTest, MissingAdjustedCountsAsZero) {
  EXPECT_EQ(carriedForward({.recvBytes = 30}, ConnectionMetrics{.recvBytes = 20}, std::nullopt),
            (ConnectionMetrics{.recvBytes = 10}));
}

TEST(AdjustedMetricsTest, EachOfTheSevenCountersIsCarriedOnItsOwn) {
  for (const auto& field : connectionMetricsFields) {
    if (field.key == "mtu") continue;
    ConnectionMetrics original;
    original.*field.member = largest32;  // wraps, while the others grow
    const ConnectionMetrics sum = carriedForward(oneToEight, original, oneToEight);
    for (const auto& other : connectionMetricsFields) {
      const std::uint64_t once = oneToEight.*other.member;
      EXPECT_EQ(sum.*other.member, other.key == "mtu" ? once : 2 * once)
          << field.key << " " << other.key;
    }
  }
}

TEST(AdjustedMetricsTest, MtuIsTheCurrentOne) {
  const auto sum =
      carriedForward({.mtu = 1500}, ConnectionMetrics{.mtu = 9000}, ConnectionMetrics{.mtu = 9000});
  EXPECT_EQ(sum.mtu, 1500U);
}

TEST(AdjustedMetricsTest, SumMayReachTheEndOfTheRange) {
  EXPECT_EQ(adjusted(10, 0, largest64 - 10), largest64);
  EXPECT_EQ(adjusted(10, largest32 - 5, largest64 - 15), largest64);
}

TEST(AdjustedMetricsTest, StoredCounterBeyond32BitsThatGrewIsNoWrap) {
  EXPECT_EQ(adjusted(largest32 + 9, largest32 + 2, 100), 107U);
}

TEST(AdjustedMetricsDeathTest, OldAbove4294967295ThatWrapped) {
  EXPECT_DEATH(static_cast<void>(adjusted(0, largest32 + 1, 0)),
               "a counter that wrapped at 32 bits was stored with more of them");
}

TEST(AdjustedMetricsDeathTest, OverflowPastTheRangeByGrowth) {
  EXPECT_DEATH(static_cast<void>(adjusted(11, 0, largest64 - 10)), "exceeds the range");
}

TEST(AdjustedMetricsDeathTest, OverflowPastTheRangeByAWrap) {
  EXPECT_DEATH(static_cast<void>(adjusted(10, largest32 - 5, largest64 - 14)), "exceeds the range");
  EXPECT_DEATH(static_cast<void>(adjusted(10, largest32, largest64 - 9)), "exceeds the range");
}

}  // namespace
}  // namespace lanternfold
