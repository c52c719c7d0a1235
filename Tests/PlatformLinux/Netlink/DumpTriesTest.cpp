#include <cstdint>
#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "PlatformLinux/Netlink/DumpTries.h"

namespace lanternfold::test {
namespace {

struct Link {
  std::uint32_t index = 0;
  std::string name;
};

/// "1 eth0, 2 eth1": the table made of these tries, all of them interrupted.
std::string united(std::initializer_list<std::initializer_list<Link>> dump) {
  DumpTries<Link> tries;
  for (const auto& links : dump) {
    tries.begin();
    for (const Link& link : links) tries.take(link);
  }
  std::string text;
  for (const Link& link : std::move(tries).united(&Link::index, &Link::index, &Link::name)) {
    text += (text.empty() ? "" : ", ") + std::to_string(link.index) + " " + link.name;
  }
  return text;
}

TEST(DumpTries, ALinkThatTheLastTryPassedOverIsKept) {
  EXPECT_EQ(united({{{2, "b"}, {1, "a"}, {3, "c"}}, {{2, "b"}, {1, "a"}}}), "3 c, 2 b, 1 a");
}

TEST(DumpTries, ALinkThatOnlyTheFirstOfManyTriesMetIsKept) {
  EXPECT_EQ(united({{{9, "stays"}, {2, "b"}, {1, "a"}},
                    {{2, "b"}, {1, "a"}},
                    {{2, "b"}, {1, "a"}},
                    {{2, "b"}, {1, "a"}}}),
            "9 stays, 2 b, 1 a");
}

TEST(DumpTries, TheLastRecordOfAnIndexCounts) {
  EXPECT_EQ(united({{{2, "old"}, {1, "a"}}, {{2, "new"}, {1, "a"}}}), "2 new, 1 a");
}

TEST(DumpTries, ALinkWhoseNameAnotherBearsByNowIsGone) {
  EXPECT_EQ(united({{{7, "eth0"}, {1, "a"}}, {{8, "eth0"}, {1, "a"}}}), "8 eth0, 1 a");
}

TEST(DumpTries, ARecordThatIsLeftOutSupersedesNothing) {
  // Index 7 was "x" first, then "y"; "y" belongs to 8 by now, and of 7 the name "x" is the last
  // that nobody else claims.
  EXPECT_EQ(united({{{7, "x"}}, {{7, "y"}}, {{8, "y"}, {1, "a"}}}), "7 x, 8 y, 1 a");
}

TEST(DumpTries, ALinkThatOneTryMetTwiceStandsOnce) {
  EXPECT_EQ(united({{{2, "b"}, {1, "a"}, {2, "b"}}}), "1 a, 2 b");
}

TEST(DumpTries, ALastTryInAscendingOrderStandsAlone) {
  EXPECT_EQ(united({{{3, "went"}, {1, "a"}}, {{1, "a"}, {2, "b"}}}), "1 a, 2 b");
}

TEST(DumpTries, AnEmptyLastTryPassedNothingOver) {
  EXPECT_EQ(united({{{2, "b"}, {1, "a"}}, {}}), "");
}

TEST(DumpTries, NoTriesAreAnEmptyTable) {
  EXPECT_EQ(united({}), "");
  EXPECT_TRUE(DumpTries<Link>().ofLastTry().empty());
}

TEST(DumpTries, WithoutAnInterruptionTheLastTryIsTheTable) {
  DumpTries<Link> tries;
  tries.begin();
  tries.take({5, "abandoned"});
  tries.begin();
  tries.take({2, "b"});
  const auto links = std::move(tries).ofLastTry();
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links.front().name, "b");
}

}  // namespace
}  // namespace lanternfold::test
