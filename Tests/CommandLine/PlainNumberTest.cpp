#include <gtest/gtest.h>

#include "CommandLine/PlainNumber.h"

namespace lanternfold {
namespace {

TEST(PlainNumber, WholeNumbersAreDigits) {
  EXPECT_EQ(plainWholeNumber("0"), 0U);
  EXPECT_EQ(plainWholeNumber("120"), 120U);
  EXPECT_EQ(plainWholeNumber("010"), 10U) << "decimal whatever it begins with";
  EXPECT_EQ(plainWholeNumber("18446744073709551615"), UINT64_MAX);
}

TEST(PlainNumber, WhatIsNoWholeNumberIsNone) {
  for (const char* text :
       {"",      " ",   " 5",   "5 ",  "+5",  "-5",           "-0",
        "0x5",   "5.0", "5.",   ".5",  "5e0", "1,000",        "1_000",
        "1'000", "5s",  "five", "nan", "inf", "\xEF\xBC\x95", "18446744073709551616"}) {
    EXPECT_EQ(plainWholeNumber(text), std::nullopt) << text;
  }
  EXPECT_EQ(plainWholeNumber(std::string_view("5\0", 2)), std::nullopt);
}

TEST(PlainNumber, NumbersMayHaveAPoint) {
  EXPECT_EQ(plainNumber("2"), 2.0);
  EXPECT_EQ(plainNumber("1.5"), 1.5);
  EXPECT_EQ(plainNumber("0.50"), 0.5);
}

TEST(PlainNumber, WhatIsNoPlainNumberIsNone) {
  for (const char* text : {"", ".", " 2", "2 ", "+2", "-2", "0x2", "2.", ".5", "1.5.1", "2e0",
                           "1,5", "1.5x", "1.-5", "nan", "inf"}) {
    EXPECT_EQ(plainNumber(text), std::nullopt) << text;
  }
  EXPECT_EQ(plainNumber(std::string(100'000, '9')), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
