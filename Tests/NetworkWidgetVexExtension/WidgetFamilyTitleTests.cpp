#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"
#include "Tests/Support/BracketingStringTable.h"

namespace lanternfold {
namespace {

TEST(WidgetFamilyTitle, EachSizeHasItsNameInTheUsersLanguage) {
  const BracketingStringTable strings;
  EXPECT_EQ(widgetFamilyTitle(WidgetFamily::small, strings), strings.localized("Small"));
  EXPECT_EQ(widgetFamilyTitle(WidgetFamily::medium, strings), strings.localized("Medium"));
  EXPECT_EQ(widgetFamilyTitle(WidgetFamily::large, strings), strings.localized("Large"));
}

}  // namespace
}  // namespace lanternfold
