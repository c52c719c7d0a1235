#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/SampleText.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class SampleLineTest : public testing::Test {
 protected:
  void SetUp() override {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
  }
  void TearDown() override {
    ::unsetenv("TZ");
    ::tzset();
  }

  static RecordedSample sampleAt(std::chrono::seconds elapsed,
                                 std::vector<ConnectionMetricsMap::Entry> entries) {
    return {.date = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1) + elapsed,
            .moment = std::chrono::steady_clock::time_point(1h) + elapsed,
            .bandwidthClass = ConnectionBandwidthClass::idle,
            .intervalSeconds = 120,
            .metrics = ConnectionMetricsMap::of(std::move(entries))};
  }
  std::string line(const RecordedSample& sample, const std::optional<RecordedSample>& earlier,
                   TextStyle style = TextStyle::plain) const {
    return sampleLine(
        sample, earlier, [](std::string_view name) { return name != "lo"; }, strings_, style);
  }

  FakeStringTable strings_;
};

TEST_F(SampleLineTest, TheFirstOneShowsWhatHasBeenCountedSoFar) {
  EXPECT_EQ(line(sampleAt(0s, {{"en0", {.sentBytes = 2000, .recvBytes = 1'500'000}}}), {}),
            "2024-01-01 00:00:00  idle       next in 120 s  "
            "en0 received 1.5 MB, sent 2 KB so far");
}

TEST_F(SampleLineTest, LaterOnesShowWhatCameAndWentSinceWithItsRate) {
  const auto earlier = sampleAt(
      0s, {{"en0", {.sentBytes = 2000, .recvBytes = 1'000'000}}, {"en1", {.recvBytes = 70}}});
  auto sample = sampleAt(
      100s, {{"en0", {.sentBytes = 2000, .recvBytes = 601'000'000}}, {"en1", {.recvBytes = 110}}});
  sample.bandwidthClass = ConnectionBandwidthClass::veryHigh;
  sample.intervalSeconds = 15;
  EXPECT_EQ(line(sample, earlier),
            "2024-01-01 00:01:40  very high  next in 15 s   "
            "en0 received 600 MB (6 MB/s), sent nothing; "
            "en1 received 40 bytes (<1 byte/s), sent nothing");
}

TEST_F(SampleLineTest, AQuietTimeIsSaidInTwoWords) {
  const auto earlier = sampleAt(0s, {{"en0", {.recvBytes = 70}}});
  EXPECT_EQ(line(sampleAt(120s, {{"en0", {.recvBytes = 70}}}), earlier),
            "2024-01-01 00:02:00  idle       next in 120 s  no traffic");
  EXPECT_EQ(line(sampleAt(120s, {}), earlier),
            "2024-01-01 00:02:00  idle       next in 120 s  no traffic");
}

TEST_F(SampleLineTest, OnlyAdaptersAreShown) {
  EXPECT_THAT(line(sampleAt(0s, {{"lo", {.recvBytes = 70}}}), {}), testing::EndsWith("no traffic"));
}

TEST_F(SampleLineTest, AnAdapterThatHasAppearedIsShownWithAllItHasCounted) {
  EXPECT_THAT(line(sampleAt(10s, {{"en0", {.recvBytes = 70}}}), sampleAt(0s, {})),
              testing::EndsWith("  en0 received 70 bytes, sent nothing so far"));
}

TEST_F(SampleLineTest, CountersThatHaveStartedAgainAreNoNegativeTraffic) {
  const auto earlier = sampleAt(0s, {{"en0", {.sentBytes = 5, .recvBytes = 700}}});
  EXPECT_THAT(line(sampleAt(10s, {{"en0", {.sentBytes = 9, .recvBytes = 70}}}), earlier),
              testing::EndsWith("  en0 received 70 bytes, sent 9 bytes so far"));
}

TEST_F(SampleLineTest, TwoSamplesOfOneMomentHaveNoRate) {
  const auto earlier = sampleAt(0s, {{"en0", {.recvBytes = 70}}});
  EXPECT_THAT(line(sampleAt(0s, {{"en0", {.recvBytes = 80}}}), earlier),
              testing::EndsWith("  en0 received 10 bytes, sent nothing"));
}

TEST_F(SampleLineTest, ANameReachesNoTerminalAsAControlSequence) {
  EXPECT_THAT(line(sampleAt(0s, {{"en\x1b[31m", {.recvBytes = 70}}}), {}),
              testing::HasSubstr("en\\x1b[31m received"));
}

TEST_F(SampleLineTest, AFractionOfASecondIsShown) {
  auto sample = sampleAt(0s, {});
  sample.intervalSeconds = 1.5;
  EXPECT_EQ(line(sample, {}), "2024-01-01 00:00:00  idle       next in 1.5 s  no traffic");
}

TEST_F(SampleLineTest, ABusyTimeStandsOut) {
  auto sample = sampleAt(0s, {});
  EXPECT_THAT(line(sample, {}, TextStyle::coloured), testing::HasSubstr("00  idle       next"));
  sample.bandwidthClass = ConnectionBandwidthClass::low;
  EXPECT_THAT(line(sample, {}, TextStyle::coloured),
              testing::HasSubstr("00  \x1b[1mlow      \x1b[0m  next"));
}

TEST(MetricsTable, LeavesOutErrorsAndCollisionsThatNobodyHas) {
  const FakeStringTable strings;
  std::ostringstream output;
  writeMetricsTable(
      ConnectionMetricsMap::of({{"en0", {.sentError = 3, .mtu = 1500}}, {"lo", {.mtu = 65536}}}),
      strings, {.output = output, .errors = output});
  EXPECT_EQ(output.str(),
            "Name  Received     Sent  Packets in  Packets out  Errors out    MTU\n"
            "en0    Zero KB  Zero KB           0            0           3   1500\n"
            "lo     Zero KB  Zero KB           0            0           0  65536\n");
}

TEST(MetricsTable, ShowsEveryCounter) {
  const FakeStringTable strings;
  std::ostringstream output;
  writeMetricsTable(ConnectionMetricsMap::of({{"en0",
                                               {.sentBytes = 2000,
                                                .recvBytes = 1'500'000,
                                                .sentError = 1,
                                                .recvError = 2,
                                                .sentPacket = 30,
                                                .recvPacket = 40,
                                                .collisions = 5,
                                                .mtu = 1500}},
                                              {"lo", {.mtu = 65536}}}),
                    strings, {.output = output, .errors = output});
  EXPECT_EQ(output.str(),
            "Name  Received     Sent  Packets in  Packets out  Errors in  Errors out  Collisions"
            "    MTU\n"
            "en0     1.5 MB     2 KB          40           30          2           1           5"
            "   1500\n"
            "lo     Zero KB  Zero KB           0            0          0           0           0"
            "  65536\n");
}

}  // namespace
}  // namespace lanternfold
