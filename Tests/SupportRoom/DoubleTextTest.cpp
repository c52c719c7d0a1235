#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "Support/DoubleText.h"

namespace lanternfold {
namespace {

TEST(DoubleText, WritesWholeNumbersWithAFraction) {
  EXPECT_EQ(doubleText(1300.0), "1300.0");
  EXPECT_EQ(doubleText(0.0), "0.0");
  EXPECT_EQ(doubleText(-0.0), "-0.0");
  EXPECT_EQ(doubleText(-7), "-7.0");
  EXPECT_EQ(doubleText(100000), "100000.0");
}

TEST(DoubleText, WritesTheShortestTextThatReadsBackEqual) {
  EXPECT_EQ(doubleText(0.1), "0.1");
  EXPECT_EQ(doubleText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(doubleText(866.7), "866.7");
  EXPECT_EQ(doubleText(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(doubleText(-573.5), "-573.5");
}

TEST(DoubleText, WritesHugeValuesWithAFractionAndAnExponent) {
  EXPECT_EQ(doubleText(9999999999999998.0), "9999999999999998.0");
  EXPECT_EQ(doubleText(1e16), "1.0e+16");
  EXPECT_EQ(doubleText(-2.5e300), "-2.5e+300");
  EXPECT_EQ(doubleText(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
}

TEST(DoubleText, WritesTinyValuesWithAFractionAndAnExponent) {
  EXPECT_EQ(doubleText(0.0001), "0.0001");
  EXPECT_EQ(doubleText(0.00012345678901234567), "0.00012345678901234567");
  EXPECT_EQ(doubleText(0.00001), "1.0e-05");
  EXPECT_EQ(doubleText(std::numeric_limits<double>::denorm_min()), "5.0e-324");
}

TEST(DoubleText, NamesWhatIsNotFinite) {
  EXPECT_EQ(doubleText(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(doubleText(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(doubleText(std::nan("")), "nan");
}

TEST(DoubleText, ReadsBackEqualAndHasAFractionWhateverTheBits) {
  std::mt19937_64 random(20240917);
  for (int round = 0; round < 20000; ++round) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = doubleText(value);
    double read = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
    ASSERT_EQ(result.ptr, text.data() + text.size()) << text;
    ASSERT_EQ(read, value) << text;
    ASSERT_NE(text.find('.'), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace lanternfold
