#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/FakeStringTable.h"
#include "WidgetHost/Bandwidth/BandwidthTexts.h"

namespace lanternfold {
namespace {

class BandwidthTextsTest : public testing::Test {
 protected:
  [[nodiscard]] std::string bytes(double rate) const {
    return byteRateFigure(rate, strings_).text();
  }

  FakeStringTable strings_;
};

TEST_F(BandwidthTextsTest, ARateHasThreeDigits) {
  EXPECT_EQ(bytes(0), "0 KB/s");
  EXPECT_EQ(bytes(4), "0 KB/s");
  EXPECT_EQ(bytes(420), "0.42 KB/s");
  EXPECT_EQ(bytes(9'994), "9.99 KB/s");
  EXPECT_EQ(bytes(9'996), "10.0 KB/s");
  EXPECT_EQ(bytes(12'340), "12.3 KB/s");
  EXPECT_EQ(bytes(99'960), "100 KB/s");
  EXPECT_EQ(bytes(999'499), "999 KB/s");
  EXPECT_EQ(bytes(1'250'000'000), "1.25 GB/s");
  EXPECT_EQ(bytes(2.5e12), "2.50 TB/s");
}

TEST_F(BandwidthTextsTest, ARateThatRoundsToAFullUnitIsShownInIt) {
  EXPECT_EQ(bytes(999'500), "1.00 MB/s");
  EXPECT_EQ(bytes(999'500'000), "1.00 GB/s");
}

TEST_F(BandwidthTextsTest, BitsAreEightTimesAsMany) {
  EXPECT_EQ(bitRateFigure(12'300'000, strings_).text(), "98.4 Mbit/s");
  EXPECT_EQ(bitRateFigure(1'250'000'000, strings_).text(), "10.0 Gbit/s");
  EXPECT_EQ(bitRateFigure(125, strings_).text(), "1.00 kbit/s");
}

// No counter passes more in a second; a text of it must not be cut.
TEST_F(BandwidthTextsTest, TheLargestRateHasAText) {
  const auto largest = static_cast<double>(std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(bytes(largest), "18446744 TB/s");
  EXPECT_EQ(bytes(largest * 1e9), "18446744073709552 TB/s");
}

TEST_F(BandwidthTextsTest, TheGraphsEdgeHasNoFraction) {
  EXPECT_EQ(roundRateText(10'000, strings_), "10 KB/s");
  EXPECT_EQ(roundRateText(20'000'000, strings_), "20 MB/s");
  EXPECT_EQ(roundRateText(1e9, strings_), "1 GB/s");
}

TEST_F(BandwidthTextsTest, NumbersAreInTheUsersLanguage) {
  strings_.setDecimalSeparator(",");
  strings_.set("MB/s", "Mo/s");
  EXPECT_EQ(bytes(1'230'000), "1,23 Mo/s");
}

TEST_F(BandwidthTextsTest, TotalsAreWrittenAsTheWidgetsDoButForTheWordForNone) {
  EXPECT_EQ(totalText(0, strings_), "0 KB");
  EXPECT_EQ(totalText(1'230'000'000, strings_), "1.23 GB");
}

TEST_F(BandwidthTextsTest, TheStatusSaysHowBusyTheAdapterIs) {
  BandwidthMonitorState state{.availability = BandwidthAvailability::present};
  EXPECT_EQ(statusText(state, strings_), "");
  using enum ConnectionBandwidthClass;
  const auto textOf = [&](ConnectionBandwidthClass bandwidthClass) {
    state.traffic.bandwidthClass = bandwidthClass;
    return statusText(state, strings_);
  };
  EXPECT_EQ(textOf(idle), "Idle");
  EXPECT_EQ(textOf(low), "Low traffic");
  EXPECT_EQ(textOf(high), "High traffic");
  EXPECT_EQ(textOf(veryHigh), "Very high traffic");
}

TEST_F(BandwidthTextsTest, TheStatusSaysWhyThereIsNothingToMeasure) {
  const auto textOf = [&](BandwidthAvailability availability) {
    return statusText({.availability = availability}, strings_);
  };
  EXPECT_EQ(textOf(BandwidthAvailability::unknown), "");
  EXPECT_EQ(textOf(BandwidthAvailability::noAdapter), "No network adapter");
  EXPECT_EQ(textOf(BandwidthAvailability::gone), "Not available");
}

TEST_F(BandwidthTextsTest, TheSummarySaysAllThatIsShown) {
  BandwidthMonitorState state{.adapterName = "Port (en0)",
                              .availability = BandwidthAvailability::present};
  state.traffic.totals = {.sentBytes = 2'000'000, .recvBytes = 3'000'000'000};
  state.traffic.minute.back() = {.received = 1'500'000, .sent = 2000};
  state.traffic.bandwidthClass = ConnectionBandwidthClass::low;
  EXPECT_EQ(bandwidthSummary(state, strings_),
            "Port (en0)\nLow traffic\nReceiving 1.50 MB/s, sending 2.00 KB/s\n"
            "Received 3 GB and sent 2 MB in total");
}

TEST_F(BandwidthTextsTest, TheSummaryOfAnAdapterThatIsGoneSaysSo) {
  EXPECT_EQ(
      bandwidthSummary({.adapterName = "Port (en0)", .availability = BandwidthAvailability::gone},
                       strings_),
      "Port (en0)\nNot available\nIt is gone, or cannot be read now.");
  EXPECT_EQ(bandwidthSummary({}, strings_), "");
}

}  // namespace
}  // namespace lanternfold
