#include <gtest/gtest.h>

#include "WidgetHost/Bandwidth/BandwidthScale.h"

namespace lanternfold {
namespace {

TrafficMinute minuteOf(TrafficRate rate) {
  TrafficMinute minute;
  minute[7] = rate;
  return minute;
}

TEST(BandwidthScaleTest, AMaximumIsOneTwoOrFiveTimesAPowerOfTen) {
  EXPECT_EQ(roundMaximum(10'000.5), 20'000);
  EXPECT_EQ(roundMaximum(20'000), 20'000);
  EXPECT_EQ(roundMaximum(20'001), 50'000);
  EXPECT_EQ(roundMaximum(50'001), 100'000);
  EXPECT_EQ(roundMaximum(100'000), 100'000);
  EXPECT_EQ(roundMaximum(1.25e9), 2e9);
  EXPECT_EQ(roundMaximum(1.8446744073709552e19), 2e19);
}

TEST(BandwidthScaleTest, ARestingAdapterDoesNotLookBusy) {
  EXPECT_EQ(roundMaximum(0), 10'000);
  EXPECT_EQ(roundMaximum(600), 10'000);
}

TEST(BandwidthScaleTest, ADirectionThatNeedsLittleHasAQuarterOfTheHeight) {
  const BandwidthScale receiving = bandwidthScale(minuteOf({.received = 19e6, .sent = 1e6}));
  EXPECT_EQ(receiving.receivedMaximum, 20e6);
  EXPECT_DOUBLE_EQ(receiving.receivedShare(), 0.75);
  const BandwidthScale sending = bandwidthScale(minuteOf({.received = 1e6, .sent = 19e6}));
  EXPECT_EQ(sending.labelledMaximum(), 20e6);
  EXPECT_DOUBLE_EQ(sending.receivedShare(), 0.25);
}

TEST(BandwidthScaleTest, EqualDirectionsShareTheHeight) {
  const BandwidthScale scale = bandwidthScale(minuteOf({.received = 19e6, .sent = 7e6}));
  EXPECT_EQ(scale, (BandwidthScale{.receivedMaximum = 20e6, .sentMaximum = 20e6}));
}

TEST(BandwidthScaleTest, AnEmptyMinuteHasAScale) {
  EXPECT_EQ(bandwidthScale({}).labelledMaximum(), 10'000);
}

// What is drawn fits, whatever the rates are.
TEST(BandwidthScaleTest, EveryRateFits) {
  for (double received = 0; received < 1e12; received = received * 1.7 + 3) {
    for (double sent = 0; sent < 1e12; sent = sent * 1.9 + 7) {
      const BandwidthScale scale = bandwidthScale(minuteOf({received, sent}));
      ASSERT_LE(received, scale.receivedMaximum) << received << ' ' << sent;
      ASSERT_LE(sent, scale.sentMaximum) << received << ' ' << sent;
    }
  }
}

}  // namespace
}  // namespace lanternfold
