#include <gtest/gtest.h>

#include "Support/DecimalText.h"

namespace lanternfold {
namespace {

std::string written(const std::string& locale, std::string_view digits) {
  return DecimalText(locale).text(digits);
}

TEST(DecimalText, HasTheSeparatorOfTheLanguage) {
  EXPECT_EQ(written("en", "1.2"), "1.2");
  for (const char* comma : {"de", "de_AT", "fr", "it", "es", "ru"}) {
    EXPECT_EQ(written(comma, "1.25"), "1,25") << comma;
  }
  for (const char* point : {"ja", "zh_CN"}) EXPECT_EQ(written(point, "1.25"), "1.25") << point;
}

TEST(DecimalText, HasTheSeparatorOfTheRegion) {
  EXPECT_EQ(written("de_CH", "1.2"), "1.2");
  EXPECT_EQ(written("es_MX", "1.2"), "1.2");
}

TEST(DecimalText, HasTheDigitsOfTheRegionWhereTheLanguageHasTwo) {
  EXPECT_EQ(written("ar_EG", "1024.5"), "\u0661\u0660\u0662\u0664\u066B\u0665");
  EXPECT_EQ(written("ar_AE", "1024.5"), "1024.5");
  EXPECT_EQ(written("ar_MA", "1024.5"), "1024,5");
}

TEST(DecimalText, NeitherGroupsNorRounds) {
  EXPECT_EQ(written("de", "16777216"), "16777216");
  EXPECT_EQ(written("en", "18446744073709551615.125"), "18446744073709551615.125");
}

TEST(DecimalText, UnknownLocaleIsWrittenPlainly) {
  for (const char* locale : {"", "tlh", "xx_YY", "en_PL"}) {
    EXPECT_EQ(written(locale, "1.5"), "1.5") << locale;
  }
  EXPECT_EQ(written(std::string(5000, 'x'), "1.5"), "1.5");
}

TEST(DecimalText, WhatIsNoNumberComesBack) {
  for (const char* text : {"", "Zero", "1.2.3", "1,5 KB"}) EXPECT_EQ(written("de", text), text);
}

}  // namespace
}  // namespace lanternfold
