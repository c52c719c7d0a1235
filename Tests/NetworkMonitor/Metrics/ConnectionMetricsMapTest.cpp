#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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

TEST(ConnectionMetricsMap, OfNoEntriesIsEmpty) {
  EXPECT_EQ(ConnectionMetricsMap::of({}), ConnectionMetricsMap());
}

TEST(ConnectionMetricsMap, FindsNamesExactly) {
  const auto map = ConnectionMetricsMap::of({{"en0", sent(7)}});
  ASSERT_NE(map.find("en0"), nullptr);
  EXPECT_EQ(map.find("en0")->sentBytes, 7U);
  EXPECT_EQ(map.find("en"), nullptr);
  EXPECT_EQ(map.find("en00"), nullptr);
  EXPECT_EQ(map.find(""), nullptr);
}

TEST(ConnectionMetricsMap, KeepsTheLastOfSeveralEntriesOfOneName) {
  const auto map = ConnectionMetricsMap::of(
      {{"en0", sent(9)}, {"lo", sent(4)}, {"en0", sent(1)}, {"aa", sent(3)}, {"en0", sent(2)}});
  EXPECT_EQ(textOf(map), "aa=3 en0=2 lo=4 ");
}

TEST(ConnectionMetricsMap, KeepsTheLastOfAHundredEntriesOfOneName) {
  std::vector<ConnectionMetricsMap::Entry> entries;
  for (std::uint64_t count = 1; count <= 100; ++count) {
    entries.push_back({"en" + std::to_string(count % 2), sent(count)});
  }
  EXPECT_EQ(textOf(ConnectionMetricsMap::of(std::move(entries))), "en0=100 en1=99 ");
}

TEST(ConnectionMetricsMap, StandsInTheOrderOfTheNamesBytes) {
  const auto map = ConnectionMetricsMap::of({{"lo", sent(0)},
                                             {"en1", sent(1)},
                                             {"en10", sent(2)},
                                             {"Zz", sent(3)},
                                             {"en0", sent(4)},
                                             {"\xFF", sent(5)}});
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

TEST(ConnectionMetricsMap, IsEqualByNamesAndRecords) {
  const ConnectionMetricsMap given(std::make_shared<const Names>(Names{"en0", "lo"}),
                                   {sent(1), sent(2)});
  EXPECT_EQ(ConnectionMetricsMap::of({{"lo", sent(2)}, {"en0", sent(1)}}), given);
  EXPECT_NE(ConnectionMetricsMap::of({{"lo", sent(3)}, {"en0", sent(1)}}), given);
  EXPECT_NE(ConnectionMetricsMap::of({{"lp", sent(2)}, {"en0", sent(1)}}), given);
  EXPECT_NE(ConnectionMetricsMap::of({{"en0", sent(1)}}), given);
}

TEST(ConnectionMetricsMapDeathTest, StopsTheProgramWhenNamesAndRecordsDifferInNumber) {
  const auto names = std::make_shared<const Names>(Names{"en0", "lo"});
  EXPECT_DEATH(ConnectionMetricsMap(names, {sent(1)}),
               "Fatal error: a map of counters was given a different number");
}

}  // namespace
}  // namespace lanternfold
