#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

namespace lanternfold {
namespace {

using Names = ConnectionMetricsMap::Names;

ConnectionMetrics sent(std::uint64_t bytes) { return {.sentBytes = bytes}; }

std::string textOf(const ConnectionMetricsMap& map) {
  std::string text;
  for (std::size_t position = 0; position < map.size(); ++position) {
    text += map.name(position) + "=" + std::to_string(map.value(position).sentBytes) + " ";
  }
  return text;
}

TEST(ConnectionMetricsMap, IsEmptyByDefault) {
  const ConnectionMetricsMap map;
  EXPECT_TRUE(map.empty());
  EXPECT_EQ(map.size(), 0U);
  EXPECT_EQ(map.find("en0"), nullptr);
}

TEST(ConnectionMetricsMap, FindsWhatWasInserted) {
  ConnectionMetricsMap map;
  map.insertOrAssign("en0", sent(7));
  ASSERT_NE(map.find("en0"), nullptr);
  EXPECT_EQ(map.find("en0")->sentBytes, 7U);
  EXPECT_EQ(map.find("en"), nullptr);
  EXPECT_EQ(map.find("en00"), nullptr);
  EXPECT_EQ(map.find(""), nullptr);
}

TEST(ConnectionMetricsMap, KeepsTheLaterOfTwoRecordsOfOneName) {
  ConnectionMetricsMap map;
  map.insertOrAssign("en0", sent(1));
  map.insertOrAssign("en0", sent(2));
  EXPECT_EQ(textOf(map), "en0=2 ");
}

TEST(ConnectionMetricsMap, StandsInTheOrderOfTheNamesBytes) {
  ConnectionMetricsMap map;
  for (const char* name : {"lo", "en1", "en10", "Zz", "en0", "\xFF"}) {
    map.insertOrAssign(name, sent(map.size()));
  }
  EXPECT_EQ(textOf(map), "Zz=3 en0=4 en1=1 en10=2 lo=0 \xFF=5 ");
}

TEST(ConnectionMetricsMap, TakesSharedNames) {
  const auto names = std::make_shared<const Names>(Names{"en0", "lo"});
  const ConnectionMetricsMap first(names, {sent(1), sent(2)});
  const ConnectionMetricsMap second(names, {sent(3), sent(4)});
  EXPECT_EQ(textOf(first), "en0=1 lo=2 ");
  EXPECT_EQ(textOf(second), "en0=3 lo=4 ");
  EXPECT_EQ(names.use_count(), 3);
}

TEST(ConnectionMetricsMap, LeavesMapsThatShareItsNamesAloneWhenANameIsAdded) {
  const auto names = std::make_shared<const Names>(Names{"en0", "lo"});
  ConnectionMetricsMap changed(names, {sent(1), sent(2)});
  const ConnectionMetricsMap kept = changed;
  changed.insertOrAssign("en5", sent(5));
  EXPECT_EQ(textOf(changed), "en0=1 en5=5 lo=2 ");
  EXPECT_EQ(textOf(kept), "en0=1 lo=2 ");
}

TEST(ConnectionMetricsMap, LeavesCopiesAloneWhenARecordChanges) {
  ConnectionMetricsMap map;
  map.insertOrAssign("en0", sent(1));
  const ConnectionMetricsMap copy = map;
  map.insertOrAssign("en0", sent(2));
  EXPECT_EQ(textOf(copy), "en0=1 ");
}

TEST(ConnectionMetricsMap, IsEqualByNamesAndRecords) {
  ConnectionMetricsMap built;
  built.insertOrAssign("lo", sent(2));
  built.insertOrAssign("en0", sent(1));
  const ConnectionMetricsMap given(std::make_shared<const Names>(Names{"en0", "lo"}),
                                   {sent(1), sent(2)});
  EXPECT_EQ(built, given);
  ConnectionMetricsMap other = given;
  other.insertOrAssign("lo", sent(3));
  EXPECT_NE(other, given);
  const ConnectionMetricsMap renamed(std::make_shared<const Names>(Names{"en0", "lp"}),
                                     {sent(1), sent(2)});
  EXPECT_NE(renamed, given);
}

TEST(ConnectionMetricsMapDeathTest, StopsTheProgramWhenNamesAndRecordsDifferInNumber) {
  const auto names = std::make_shared<const Names>(Names{"en0", "lo"});
  EXPECT_DEATH(ConnectionMetricsMap(names, {sent(1)}),
               "Fatal error: a map of counters was given a different number");
}

}  // namespace
}  // namespace lanternfold
