#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "Support/CheckedArithmetic.h"

namespace lanternfold {
namespace {

constexpr auto largest = std::numeric_limits<std::uint64_t>::max();

TEST(CheckedArithmetic, AddsUpToTheLargestValue) {
  EXPECT_EQ(checkedAdd(0, 0), 0U);
  EXPECT_EQ(checkedAdd(2, 3), 5U);
  EXPECT_EQ(checkedAdd(largest, 0), largest);
  EXPECT_EQ(checkedAdd(largest - 1, 1), largest);
}

TEST(CheckedArithmetic, AddsBeyondThirtyTwoBits) {
  EXPECT_EQ(checkedAdd(0xFFFF'FFFFU, 1), 0x1'0000'0000U);
}

TEST(CheckedArithmeticDeathTest, StopsTheProgramOneBeyondTheLargestValue) {
  EXPECT_DEATH(static_cast<void>(checkedAdd(largest, 1)), "Fatal error: a sum of counters exceeds");
  EXPECT_DEATH(static_cast<void>(checkedAdd(1, largest)), "Fatal error: a sum of counters exceeds");
}

}  // namespace
}  // namespace lanternfold
