#include "NetworkMonitor/Metrics/ConnectionBandwidthClass.h"

namespace lanternfold {
namespace {

using enum ConnectionBandwidthClass;

TEST(ConnectionBandwidthClassTest, RawValues) {
  EXPECT_EQ(connectionBandwidthClass(0), idle);
  EXPECT_EQ(connectionBandwidthClass(10), low);
  EXPECT_EQ(connectionBandwidthClass(20), high);
  EXPECT_EQ(connectionBandwidthClass(30), veryHigh);
}

TEST(ConnectionBandwidthClassTest, AnyOtherIntegerBuildsNoCase) {
  for (const std::int64_t other : {-10, -1, 1, 5, 11, 29, 31, 40}) {
    EXPECT_EQ(connectionBandwidthClass(other), std::nullopt) << other;
  }
  EXPECT_EQ(connectionBandwidthClass(std::int64_t{1} << 32), std::nullopt);
}

TEST(ConnectionBandwidthClassTest, OrderedByRawValue) {
  const std::vector<ConnectionBandwidthClass> ascending{idle, low, high, veryHigh};
  for (std::size_t left = 0; left < ascending.size(); ++left) {
    for (std::size_t right = 0; right < ascending.size(); ++right) {
      EXPECT_EQ(ascending[left] < ascending[right], left < right);
      EXPECT_EQ(ascending[left] <= ascending[right], left <= right);
      EXPECT_EQ(ascending[left] > ascending[right], left > right);
      EXPECT_EQ(ascending[left] >= ascending[right], left >= right);
    }
  }
}

TEST(ConnectionBandwidthClassTest, Names) {
  EXPECT_EQ(nameOf(idle), "idle");
  EXPECT_EQ(nameOf(low), "low");
  EXPECT_EQ(nameOf(high), "high");
  EXPECT_EQ(nameOf(veryHigh), "veryHigh");
}

}  // namespace
}  // namespace lanternfold
