#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/DateUtils.h"
#include "Tests/Support/FakeNetworkKernel.h"

namespace lanternfold {
namespace {

using std::chrono::system_clock;

/// Stands still until it is set.
class StandingClock final : public Clock {
 public:
  system_clock::time_point now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override { return {}; }
  void set(system_clock::time_point now) { now_ = now; }

 private:
  system_clock::time_point now_;
};

class DateUtilsTest : public testing::Test {
 protected:
  static system_clock::time_point secondsSince1970(std::int64_t seconds) {
    return system_clock::time_point(std::chrono::seconds(seconds));
  }

  StandingClock clock;
  FakeNetworkKernel kernel;
  DateUtils dates{clock, kernel};
};

TEST_F(DateUtilsTest, CurrentDateIsThatOfTheClock) {
  clock.set(secondsSince1970(1'700'000'000));
  EXPECT_EQ(dates.currentDate(), secondsSince1970(1'700'000'000));
  clock.set(secondsSince1970(1'600'000'000));
  EXPECT_EQ(dates.currentDate(), secondsSince1970(1'600'000'000)) << "a clock may step back";
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
