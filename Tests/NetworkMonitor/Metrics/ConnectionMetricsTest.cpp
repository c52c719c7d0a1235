#include <cstdint>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

constexpr auto largest = std::numeric_limits<std::uint64_t>::max();

TEST(ConnectionMetrics, EmptyHasEightZeros) {
  for (const auto& field : connectionMetricsFields) {
    EXPECT_EQ(ConnectionMetrics::empty().*field.member, 0U) << field.key;
  }
}

TEST(ConnectionMetrics, InitialHasZeroCountersAndTheMtu) {
  EXPECT_EQ(ConnectionMetrics::initial(1500), ConnectionMetrics{.mtu = 1500});
  EXPECT_EQ(ConnectionMetrics::initial(0), ConnectionMetrics::empty());
}

TEST(ConnectionMetrics, TotalsSumSentAndReceived) {
  EXPECT_EQ(oneToEight.totalBytes(), 3U);
  EXPECT_EQ(oneToEight.totalError(), 7U);
  EXPECT_EQ(oneToEight.totalPacket(), 11U);
}

TEST(ConnectionMetrics, TotalsReachTheLargestValue) {
  EXPECT_EQ((ConnectionMetrics{.sentBytes = largest - 1, .recvBytes = 1}.totalBytes()), largest);
}

TEST(ConnectionMetricsDeathTest, TotalsStopTheProgramOnOverflow) {
  const ConnectionMetrics bytes{.sentBytes = largest, .recvBytes = 1};
  const ConnectionMetrics errors{.sentError = 1, .recvError = largest};
  const ConnectionMetrics packets{.sentPacket = largest, .recvPacket = largest};
  EXPECT_DEATH(static_cast<void>(bytes.totalBytes()), "Fatal error: a sum of counters");
  EXPECT_DEATH(static_cast<void>(errors.totalError()), "Fatal error: a sum of counters");
  EXPECT_DEATH(static_cast<void>(packets.totalPacket()), "Fatal error: a sum of counters");
}

TEST(ConnectionMetrics, SumAddsTheSevenCounters) {
  const auto sum = oneToEight + oneToEight;
  EXPECT_EQ(sum, (ConnectionMetrics{.sentBytes = 2,
                                    .recvBytes = 4,
                                    .sentError = 6,
                                    .recvError = 8,
                                    .sentPacket = 10,
                                    .recvPacket = 12,
                                    .collisions = 14,
                                    .mtu = 8}));
}

TEST(ConnectionMetrics, SumTakesTheLargerMtu) {
  const ConnectionMetrics ordinary{.sentBytes = 10, .mtu = 1500};
  const ConnectionMetrics jumbo{.sentBytes = 5, .mtu = 9000};
  EXPECT_EQ(ordinary + jumbo, (ConnectionMetrics{.sentBytes = 15, .mtu = 9000}));
  EXPECT_EQ(jumbo + ordinary, (ConnectionMetrics{.sentBytes = 15, .mtu = 9000}));
}

TEST(ConnectionMetrics, SumOfLargestMtusDoesNotOverflow) {
  const ConnectionMetrics metrics{.mtu = largest};
  EXPECT_EQ((metrics + metrics).mtu, largest);
}

TEST(ConnectionMetrics, AddsInPlace) {
  auto metrics = ConnectionMetrics::initial(1500);
  metrics += oneToEight;
  metrics += oneToEight;
  EXPECT_EQ(metrics, ConnectionMetrics::initial(1500) + oneToEight + oneToEight);
}

TEST(ConnectionMetrics, AddsItselfInPlace) {
  auto metrics = oneToEight;
  metrics += metrics;
  EXPECT_EQ(metrics, oneToEight + oneToEight);
}

TEST(ConnectionMetricsDeathTest, SumStopsTheProgramOnOverflowOfEveryCounter) {
  for (const auto& field : connectionMetricsFields) {
    if (field.key == "mtu") continue;
    ConnectionMetrics full;
    full.*field.member = largest;
    ConnectionMetrics one;
    one.*field.member = 1;
    EXPECT_DEATH(static_cast<void>(full + one), "Fatal error: a sum of counters") << field.key;
    EXPECT_DEATH(full += one, "Fatal error: a sum of counters") << field.key;
  }
}

TEST(ConnectionMetrics, EqualityLooksAtAllEightFields) {
  EXPECT_EQ(oneToEight, ConnectionMetrics(oneToEight));
  for (const auto& field : connectionMetricsFields) {
    auto other = oneToEight;
    ++(other.*field.member);
    EXPECT_NE(oneToEight, other) << field.key;
  }
}

TEST(ConnectionMetricsType, HasRawValuesZeroAndOne) {
  EXPECT_EQ(static_cast<std::int64_t>(ConnectionMetricsType::original), 0);
  EXPECT_EQ(static_cast<std::int64_t>(ConnectionMetricsType::adjusted), 1);
  EXPECT_EQ(connectionMetricsType(0), ConnectionMetricsType::original);
  EXPECT_EQ(connectionMetricsType(1), ConnectionMetricsType::adjusted);
}

TEST(ConnectionMetricsType, RawValueTwoBuildsNoCase) {
  EXPECT_EQ(connectionMetricsType(2), std::nullopt);
}

TEST(ConnectionMetricsType, HasNoCaseForAnyOtherRawValue) {
  for (const std::int64_t rawValue :
       {std::int64_t{3}, std::int64_t{-1}, std::int64_t{1} << 32,
        std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(connectionMetricsType(rawValue), std::nullopt) << rawValue;
  }
}

}  // namespace
}  // namespace lanternfold
