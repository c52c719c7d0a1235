#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/DateUtils.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using std::chrono::system_clock;

class DateUtilsTest : public testing::Test {
 protected:
  static system_clock::time_point secondsSince1970(std::int64_t seconds) {
    return system_clock::time_point(std::chrono::seconds(seconds));
  }

  SimulatedClock clock;
  FakeNetworkKernel kernel;
  DateUtils dates{clock, kernel};
};

TEST_F(DateUtilsTest, CurrentDateIsThatOfTheClock) {
  const auto start = clock.now();
  EXPECT_EQ(dates.currentDate(), start);
  clock.advance(std::chrono::seconds(90));
  EXPECT_EQ(dates.currentDate(), start + std::chrono::seconds(90));
  clock.stepWallClock(-std::chrono::hours(2));
  EXPECT_EQ(dates.currentDate(), clock.now()) << "a wall clock may step back";
}

TEST_F(DateUtilsTest, LastBootDateIsThatOfTheKernel) {
  kernel.setBootTime(secondsSince1970(1'699'990'000));
  EXPECT_EQ(dates.lastBootDate(), secondsSince1970(1'699'990'000));
}

TEST_F(DateUtilsTest, LastBootDateIsAskedAfresh) {
  kernel.setBootTime(secondsSince1970(1));
  EXPECT_EQ(dates.lastBootDate(), secondsSince1970(1));
  kernel.setBootTime(secondsSince1970(2));
  EXPECT_EQ(dates.lastBootDate(), secondsSince1970(2));
}

TEST_F(DateUtilsTest, LastBootDateHasNoValueWhenTheKernelCannotTell) {
  EXPECT_EQ(dates.lastBootDate(), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
