#include <limits>

#include <gtest/gtest.h>

#include "PlatformDarwin/BootTimeDecoder.h"
#include "Tests/PlatformDarwin/MessageBuilder.h"

namespace lanternfold::darwin {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;
using std::chrono::system_clock;

Bytes timeval(std::int64_t wholeSeconds, std::int32_t fraction) {
  Bytes bytes;
  appendNumber(bytes, wholeSeconds);
  appendNumber(bytes, fraction);
  appendZeros(bytes, 4);
  return bytes;
}

TEST(BootTime, IsSecondsAndMicrosecondsAfter1970) {
  EXPECT_EQ(decodeBootTime(timeval(1'700'000'000, 250'000)),
            system_clock::time_point(seconds(1'700'000'000) + microseconds(250'000)));
}

TEST(BootTime, OfZeroIs1970) {
  EXPECT_EQ(decodeBootTime(timeval(0, 0)), system_clock::time_point());
}

TEST(BootTime, Before1970IsAMomentToo) {
  EXPECT_EQ(decodeBootTime(timeval(-2, 500'000)),
            system_clock::time_point(microseconds(-1'500'000)));
}

TEST(BootTime, IgnoresThePaddingBehindTheMicroseconds) {
  Bytes value = timeval(1, 2);
  for (std::size_t i = 12; i < 16; ++i) value[i] = std::byte{0xFF};
  EXPECT_EQ(decodeBootTime(value), system_clock::time_point(microseconds(1'000'002)));
}

TEST(BootTime, OfAnyLengthButSixteenBytesHasNoValue) {
  Bytes value = timeval(1'700'000'000, 0);
  value.resize(40);
  for (std::size_t length = 0; length <= value.size(); ++length) {
    EXPECT_EQ(decodeBootTime(std::span(value).first(length)).has_value(), length == 16) << length;
  }
}

TEST(BootTime, BeyondTheReachOfATimePointHasNoValue) {
  EXPECT_EQ(decodeBootTime(timeval(std::numeric_limits<std::int64_t>::max(), 0)), std::nullopt);
  EXPECT_EQ(decodeBootTime(timeval(std::numeric_limits<std::int64_t>::min(), 0)), std::nullopt);
  EXPECT_EQ(decodeBootTime(timeval(9'300'000'000, 0)), std::nullopt);
}

TEST(BootTime, AtTheEdgeOfItsReachDoesNotOverflow) {
  const std::int32_t largest = std::numeric_limits<std::int32_t>::max();
  EXPECT_TRUE(decodeBootTime(timeval(9'223'368'000, largest)));
  EXPECT_TRUE(decodeBootTime(timeval(-9'223'368'000, -largest)));
}

}  // namespace
}  // namespace lanternfold::darwin
