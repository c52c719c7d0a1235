#include <gtest/gtest.h>

#include "CommandLine/SampleJson.h"

namespace lanternfold {
namespace {

TEST(MetricsMapJson, IsAnObjectByNameWithTheEightCounters) {
  EXPECT_EQ(metricsMapJson(ConnectionMetricsMap::of(
                {{"lo", {.mtu = 65536}}, {"en0", {.sentBytes = 18'446'744'073'709'551'615U}}})),
            R"({"en0":{"sentBytes":18446744073709551615,"recvBytes":0,"sentError":0,"recvError":0,)"
            R"("sentPacket":0,"recvPacket":0,"collisions":0,"mtu":0},)"
            R"("lo":{"sentBytes":0,"recvBytes":0,"sentError":0,"recvError":0,)"
            R"("sentPacket":0,"recvPacket":0,"collisions":0,"mtu":65536}})");
  EXPECT_EQ(metricsMapJson({}), "{}");
}

TEST(SampleJson, HoldsTheFourMembersInTheirOrder) {
  using namespace std::chrono_literals;
  RecordedSample sample{.date = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1) + 12h + 34ms,
                        .moment = {},
                        .bandwidthClass = ConnectionBandwidthClass::veryHigh,
                        .intervalSeconds = 15,
                        .metrics = {}};
  EXPECT_EQ(sampleJson(sample), R"({"date":"2024-01-01T12:00:00.034Z","bandwidthClass":"veryHigh",)"
                                R"("intervalSeconds":15,"metrics":{}})");
  sample.intervalSeconds = 1.5;
  EXPECT_THAT(sampleJson(sample), testing::HasSubstr(R"("intervalSeconds":1.5,)"));
}

TEST(SampleJson, ANameThatIsNoTextIsShownWithoutIt) {
  EXPECT_THAT(metricsMapJson(ConnectionMetricsMap::of({{"en\xff", {}}})),
              testing::StartsWith("{\"en\xEF\xBF\xBD\":"));
}

}  // namespace
}  // namespace lanternfold
