#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Support/ByteCountFormatter.h"

namespace lanternfold {
namespace {

std::string english(std::string_view key) { return std::string(key); }

std::string plain(std::string_view digits) { return std::string(digits); }

std::string decimal(std::uint64_t byteCount) {
  return ByteCountFormatter(ByteCountStyle::decimal, english, plain).text(byteCount);
}

std::string binary(std::uint64_t byteCount) {
  return ByteCountFormatter(ByteCountStyle::binaryFromKilobytes, english, plain).text(byteCount);
}

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t KiB = 1024;
constexpr std::uint64_t MiB = 1024 * KiB;
constexpr std::uint64_t GiB = 1024 * MiB;
constexpr std::uint64_t TiB = 1024 * GiB;

TEST(ByteCountFormatterDecimal, WritesZeroAsAWord) { EXPECT_EQ(decimal(0), "Zero KB"); }

TEST(ByteCountFormatterDecimal, CountsSingleBytes) {
  EXPECT_EQ(decimal(1), "1 byte");
  EXPECT_EQ(decimal(2), "2 bytes");
  EXPECT_EQ(decimal(999), "999 bytes");
}

TEST(ByteCountFormatterDecimal, ShowsKilobytesWithoutAFraction) {
  EXPECT_EQ(decimal(1000), "1 KB");
  EXPECT_EQ(decimal(1499), "1 KB");
  EXPECT_EQ(decimal(1501), "2 KB");
  EXPECT_EQ(decimal(999'499), "999 KB");
}

TEST(ByteCountFormatterDecimal, ShowsMegabytesWithOneDigit) {
  EXPECT_EQ(decimal(1'200'000), "1.2 MB");
  EXPECT_EQ(decimal(1'000'000), "1 MB");
  EXPECT_EQ(decimal(1'049'999), "1 MB");
  EXPECT_EQ(decimal(1'050'001), "1.1 MB");
  EXPECT_EQ(decimal(999'900'000), "999.9 MB");
}

TEST(ByteCountFormatterDecimal, ShowsTwoDigitsFromGigabytesOn) {
  EXPECT_EQ(decimal(1'234'567'890), "1.23 GB");
  EXPECT_EQ(decimal(20'868'457'742), "20.87 GB");
  EXPECT_EQ(decimal(1'050'000'000), "1.05 GB");
  EXPECT_EQ(decimal(7'890'000'000'000), "7.89 TB");
  EXPECT_EQ(decimal(7'010'000'000'000'000), "7.01 PB");
  EXPECT_EQ(decimal(5'000'000'000'000'000'000), "5 EB");
}

TEST(ByteCountFormatterDecimal, DropsTrailingZeros) {
  EXPECT_EQ(decimal(1'500'000'000), "1.5 GB");
  EXPECT_EQ(decimal(2'000'000'000), "2 GB");
  EXPECT_EQ(decimal(100'000'000'000), "100 GB");
}

TEST(ByteCountFormatterDecimal, RoundsHalfToEven) {
  EXPECT_EQ(decimal(1'500), "2 KB");
  EXPECT_EQ(decimal(2'500), "2 KB");
  EXPECT_EQ(decimal(3'500), "4 KB");
  EXPECT_EQ(decimal(1'250'000), "1.2 MB");
  EXPECT_EQ(decimal(1'350'000), "1.4 MB");
  EXPECT_EQ(decimal(1'225'000'000), "1.22 GB");
  EXPECT_EQ(decimal(1'235'000'000), "1.24 GB");
  EXPECT_EQ(decimal(1'225'000'001), "1.23 GB");
}

TEST(ByteCountFormatterDecimal, CarriesIntoTheNextUnitWhenRoundingFillsOne) {
  EXPECT_EQ(decimal(999'500), "1 MB");
  EXPECT_EQ(decimal(999'949'999), "999.9 MB");
  EXPECT_EQ(decimal(999'950'000), "1 GB");
  EXPECT_EQ(decimal(999'994'999'999), "999.99 GB");
  EXPECT_EQ(decimal(999'995'000'000), "1 TB");
  EXPECT_EQ(decimal(999'999'999'999'999), "1 PB");
  EXPECT_EQ(decimal(999'999'999'999'999'999), "1 EB");
}

TEST(ByteCountFormatterDecimal, ShowsTheLargestCount) { EXPECT_EQ(decimal(largest), "18.45 EB"); }

TEST(ByteCountFormatterDecimal, GivesTheWordForZeroAndItsUnitApart) {
  const ByteCountFormatter formatter(ByteCountStyle::decimal, english, plain);
  EXPECT_EQ(formatter.number(0), "Zero");
  EXPECT_EQ(formatter.unit(0), "KB");
}

TEST(ByteCountFormatterBinary, WritesZeroAsANumber) { EXPECT_EQ(binary(0), "0 KB"); }

TEST(ByteCountFormatterBinary, ShowsOneDigitOfKilobytesBelowOne) {
  EXPECT_EQ(binary(1), "0 KB");
  EXPECT_EQ(binary(51), "0 KB");
  EXPECT_EQ(binary(52), "0.1 KB");
  EXPECT_EQ(binary(512), "0.5 KB");
  EXPECT_EQ(binary(972), "0.9 KB");
  EXPECT_EQ(binary(973), "1 KB");
  EXPECT_EQ(binary(1023), "1 KB");
}

TEST(ByteCountFormatterBinary, CountsInMultiplesOf1024) {
  EXPECT_EQ(binary(KiB), "1 KB");
  EXPECT_EQ(binary(1000 * KiB), "1000 KB");
  EXPECT_EQ(binary(MiB), "1 MB");
  EXPECT_EQ(binary(5 * MiB / 4), "1.2 MB");
  EXPECT_EQ(binary(GiB), "1 GB");
  EXPECT_EQ(binary(GiB + GiB / 4), "1.25 GB");
  EXPECT_EQ(binary(3 * TiB), "3 TB");
}

TEST(ByteCountFormatterBinary, RoundsHalfToEven) {
  EXPECT_EQ(binary(3 * KiB / 2), "2 KB");
  EXPECT_EQ(binary(5 * KiB / 2), "2 KB");
  EXPECT_EQ(binary(256), "0.2 KB");
  EXPECT_EQ(binary(768), "0.8 KB");
  EXPECT_EQ(binary(MiB + MiB / 4), "1.2 MB");
  EXPECT_EQ(binary(MiB + 3 * MiB / 4), "1.8 MB");
  EXPECT_EQ(binary(GiB + GiB / 8), "1.12 GB");
  EXPECT_EQ(binary(GiB + 3 * GiB / 8), "1.38 GB");
}

TEST(ByteCountFormatterBinary, CarriesIntoTheNextUnitWhenRoundingFillsOne) {
  EXPECT_EQ(binary(1023 * KiB + 511), "1023 KB");
  EXPECT_EQ(binary(1023 * KiB + 512), "1 MB");
  EXPECT_EQ(binary(GiB - 1), "1 GB");
  EXPECT_EQ(binary(TiB - 1), "1 TB");
}

TEST(ByteCountFormatterBinary, HasNoUnitBeyondTerabytes) {
  EXPECT_EQ(binary(1024 * TiB), "1024 TB");
  EXPECT_EQ(binary(largest), "16777216 TB");
}

TEST(ByteCountFormatterBinary, GivesNumberAndUnitApart) {
  const ByteCountFormatter formatter(ByteCountStyle::binaryFromKilobytes, english, plain);
  EXPECT_EQ(formatter.number(5 * MiB / 2), "2.5");
  EXPECT_EQ(formatter.unit(5 * MiB / 2), "MB");
  EXPECT_EQ(formatter.number(1023 * KiB + 1023), "1");
  EXPECT_EQ(formatter.unit(1023 * KiB + 1023), "MB");
  EXPECT_EQ(formatter.number(0), "0");
  EXPECT_EQ(formatter.unit(0), "KB");
}

TEST(ByteCountFormatter, NeverShowsAFullUnitOfTheNextSize) {
  std::uint64_t power = 1;
  for (const char* unit : {"KB", "MB", "GB", "TB", "PB", "EB"}) {
    power *= 1'000;
    EXPECT_EQ(decimal(power), std::string("1 ") + unit);
    for (std::uint64_t below = 1; below <= power / 10; below *= 2) {
      EXPECT_EQ(decimal(power - below).find("1000"), std::string::npos) << power - below;
    }
  }
}

TEST(ByteCountFormatter, AsksTheLookUpForEveryWord) {
  const auto french = [](std::string_view key) -> std::string {
    if (key == "Zero") return "Zéro";
    if (key == "bytes") return "octets";
    if (key == "byte") return "octet";
    if (key == "KB") return "ko";
    return key == "MB" ? "Mo" : std::string(key);
  };
  const ByteCountFormatter formatter(ByteCountStyle::decimal, french, plain);
  EXPECT_EQ(formatter.text(0), "Zéro ko");
  EXPECT_EQ(formatter.text(1), "1 octet");
  EXPECT_EQ(formatter.text(12), "12 octets");
  EXPECT_EQ(formatter.text(1'200'000), "1.2 Mo");
}

TEST(ByteCountFormatter, WritesNumbersAsTheLanguageDoes) {
  const auto bracketed = [](std::string_view digits) { return "<" + std::string(digits) + ">"; };
  const ByteCountFormatter decimals(ByteCountStyle::decimal, english, bracketed);
  EXPECT_EQ(decimals.text(1'230'000'000), "<1.23> GB");
  EXPECT_EQ(decimals.number(999), "<999>");
  EXPECT_EQ(decimals.number(0), "Zero") << "a word is no number";
  const ByteCountFormatter binaries(ByteCountStyle::binaryFromKilobytes, english, bracketed);
  EXPECT_EQ(binaries.number(5 * MiB / 2), "<2.5>");
  EXPECT_EQ(binaries.text(0), "<0> KB");
}

TEST(ByteCountFormatter, WritesTheExactDigitsOfTheLargestCounts) {
  EXPECT_EQ(binary(largest - 1), "16777216 TB");
  EXPECT_EQ(binary(TiB + TiB / 100), "1.01 TB");
  EXPECT_EQ(binary(123 * TiB + 45 * TiB / 100), "123.45 TB");
}

}  // namespace
}  // namespace lanternfold
