#include <gtest/gtest.h>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"

namespace lanternfold {
namespace {

using Category = NetworkSourceCategory;

TEST(NetworkSourceCategory, HasTheRawValuesOfItsMembers) {
  EXPECT_EQ(Category::internet().rawValue(), 1);
  EXPECT_EQ(Category::wlan().rawValue(), 2);
  EXPECT_EQ(Category::cellular().rawValue(), 4);
  EXPECT_EQ(Category::other().rawValue(), 8);
  EXPECT_EQ(Category::all().rawValue(), 15);
}

TEST(NetworkSourceCategory, AllContainsEachMember) {
  for (const auto member :
       {Category::internet(), Category::wlan(), Category::cellular(), Category::other()}) {
    EXPECT_TRUE(Category::all().contains(member)) << member.rawValue();
  }
}

TEST(NetworkSourceCategory, AllIsTheUnionOfTheFour) {
  EXPECT_EQ(Category::all(), (Category{Category::internet(), Category::wlan(), Category::cellular(),
                                       Category::other()}));
}

TEST(NetworkSourceCategory, TheEmptySetContainsNone) {
  for (const auto member :
       {Category::internet(), Category::wlan(), Category::cellular(), Category::other()}) {
    EXPECT_FALSE(Category().contains(member)) << member.rawValue();
  }
}

}  // namespace
}  // namespace lanternfold
