// The text of a lock file.
#include <chrono>
#include <clocale>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/LockFileText.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::system_clock::time_point startOf2024 =
    std::chrono::sys_days(std::chrono::year(2024) / std::chrono::January / 1);

double secondsIn(std::string_view text) {
  const auto time = decodeLockFileText(text);
  return time ? time->count() : std::numeric_limits<double>::quiet_NaN();
}

TEST(LockFileText, IsSecondsSince2001WithEightDecimals) {
  EXPECT_EQ(encodeLockFileText(startOf2024), "725760000.00000000");
  EXPECT_EQ(encodeLockFileText(startOf2024 + 500ms), "725760000.50000000");
  EXPECT_EQ(encodeLockFileText(std::chrono::sys_days(std::chrono::year(2001) / 1 / 1)),
            "0.00000000");
}

TEST(LockFileText, IsNegativeBefore2001) {
  EXPECT_EQ(encodeLockFileText(std::chrono::system_clock::time_point{}), "-978307200.00000000");
  EXPECT_EQ(encodeLockFileText(std::chrono::sys_days(std::chrono::year(2001) / 1 / 1) - 250ms),
            "-0.25000000");
}

TEST(LockFileText, HoldsEveryMomentOfTheSystemsClock) {
  for (const auto date : {std::chrono::system_clock::time_point::min(),
                          std::chrono::system_clock::time_point::max()}) {
    EXPECT_EQ(decodeLockFileText(encodeLockFileText(date)), secondsSince2001(date));
  }
}

TEST(LockFileText, IsTheSameInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"de_DE.UTF-8", "C.UTF-8", "C"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(encodeLockFileText(startOf2024 + 500ms), "725760000.50000000") << locale;
    EXPECT_EQ(secondsIn("725760000.50000000"), 725760000.5) << locale;
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(LockFileText, ReadsBackTheMomentThatItWasWrittenFor) {
  for (const auto since : {0ns, 1ns, 119ns, 123'456'789ns, 999'999'999ns}) {
    EXPECT_EQ(decodeLockFileText(encodeLockFileText(startOf2024 + since)),
              secondsSince2001(startOf2024 + since));
  }
}

TEST(LockFileText, OfALaterMomentIsLaterFromAMicrosecondOn) {
  EXPECT_LT(secondsSince2001(startOf2024), secondsSince2001(startOf2024 + 1us));
  EXPECT_LT(secondsSince2001(startOf2024 + 50ms), secondsSince2001(startOf2024 + 50001us));
}

TEST(LockFileText, IsADecimalNumberInAnyOfItsForms) {
  EXPECT_EQ(secondsIn("0"), 0);
  EXPECT_EQ(secondsIn("-12"), -12);
  EXPECT_EQ(secondsIn("+12.5"), 12.5);
  EXPECT_EQ(secondsIn("007"), 7);
  EXPECT_EQ(secondsIn("7e8"), 7e8);
  EXPECT_EQ(secondsIn("7.25E+8"), 7.25e8);
  EXPECT_EQ(secondsIn("7e-1"), 0.7);
}

TEST(LockFileText, BeyondTheRangeOfADoubleIsTheLargestNumber) {
  EXPECT_EQ(secondsIn("1e999"), std::numeric_limits<double>::max());
  EXPECT_EQ(secondsIn("-1e999"), std::numeric_limits<double>::lowest());
  EXPECT_EQ(secondsIn("1e-999"), 0);
  EXPECT_EQ(secondsIn(std::string(400, '9')), std::numeric_limits<double>::max());
}

TEST(LockFileText, OfAnythingElseIsNoNumber) {
  for (const std::string_view text :
       {"",          " ",     "-",    "+",   ".",     ".5",  "5.",           "5.e3",    "1e",
        "1e+",       "1.2.3", "--1",  "1 ",  " 1",    "1\n", "\t1",          "1,5",     "inf",
        "-infinity", "nan",   "0x10", "1p3", "1'000", "one", "725846400.5s", "\uFEFF1", "\xFF\xFE",
        "１"}) {
    EXPECT_FALSE(decodeLockFileText(text)) << '"' << text << '"';
  }
  using namespace std::string_view_literals;
  EXPECT_FALSE(decodeLockFileText("1\0"sv));
  EXPECT_FALSE(decodeLockFileText("\0"sv));
}

TEST(LockFileText, LongerThanFourKibibytesIsNoNumber) {
  EXPECT_TRUE(decodeLockFileText(std::string(4096, '1')));
  EXPECT_FALSE(decodeLockFileText(std::string(4097, '1')));
}

}  // namespace
}  // namespace lanternfold
