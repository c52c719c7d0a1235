#include <gtest/gtest.h>

#include "WidgetHost/Store/WidgetIds.h"

namespace lanternfold {
namespace {

WidgetIds known(std::initializer_list<const char*> ids) {
  WidgetIds known;
  for (const char* const id : ids) known.note(id);
  return known;
}

TEST(WidgetIds, CountOnFromTheHighestNumber) {
  EXPECT_EQ(known({}).give(), "1");
  EXPECT_EQ(known({"1", "7", "clock", "-3", "99999999999"}).give(), "8");
  EXPECT_EQ(known({"999999999", "1", "2"}).give(), "3");
}

TEST(WidgetIds, NoneIsGivenTwice) {
  WidgetIds ids = known({"999999998", "2"});
  EXPECT_EQ(ids.give(), "999999999");
  EXPECT_EQ(ids.give(), "1");
  EXPECT_EQ(ids.give(), "3");
  ids.note("4");
  EXPECT_EQ(ids.give(), "5");
  EXPECT_TRUE(ids.isKnown("999999999"));
  EXPECT_FALSE(ids.isKnown("6"));
}

TEST(WidgetIds, ANumberInAnotherNotationIsTakenAsWell) { EXPECT_EQ(known({"007"}).give(), "8"); }

}  // namespace
}  // namespace lanternfold
