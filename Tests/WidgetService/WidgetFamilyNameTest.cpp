#include <gtest/gtest.h>

#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

TEST(WidgetFamilyName, OfEveryFamilyAndBack) {
  EXPECT_EQ(widgetFamilyName(WidgetFamily::small), "small");
  EXPECT_EQ(widgetFamilyName(WidgetFamily::medium), "medium");
  EXPECT_EQ(widgetFamilyName(WidgetFamily::large), "large");
  for (const auto family : {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large}) {
    EXPECT_EQ(widgetFamilyOfName(widgetFamilyName(family)), family);
  }
}

TEST(WidgetFamilyName, NoneOfAnyOtherText) {
  EXPECT_EQ(widgetFamilyOfName(""), std::nullopt);
  EXPECT_EQ(widgetFamilyOfName("Small"), std::nullopt);
  EXPECT_EQ(widgetFamilyOfName("extraLarge"), std::nullopt);
}

TEST(WidgetFamilyNameTest, SeveralAreNamedInTheirOrder) {
  EXPECT_EQ(widgetFamilyNames({WidgetFamily::small, WidgetFamily::medium}), "small or medium");
  EXPECT_EQ(widgetFamilyNames({WidgetFamily::large}), "large");
}

}  // namespace
}  // namespace lanternfold
