// What every side of the clock seam promises.
#include <thread>

#include "PlatformLinux/System/SystemClock.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

void letPass(SystemClock&, std::chrono::nanoseconds duration) {
  std::this_thread::sleep_for(duration);
}

void letPass(SimulatedClock& clock, std::chrono::nanoseconds duration) { clock.advance(duration); }

template <typename ClockUnderTest>
class ClockContractTest : public testing::Test {
 protected:
  ClockUnderTest clock;
};

using Clocks = testing::Types<SystemClock, SimulatedClock>;

class ClockNames {
 public:
  template <typename ClockUnderTest>
  static std::string GetName(int) {
    return std::is_same_v<ClockUnderTest, SystemClock> ? "System" : "Simulated";
  }
};

TYPED_TEST_SUITE(ClockContractTest, Clocks, ClockNames);

TYPED_TEST(ClockContractTest, SteadyTimeNeverGoesBackwards) {
  auto before = this->clock.steadyNow();
  for (int count = 0; count < 1000; ++count) {
    const auto now = this->clock.steadyNow();
    ASSERT_GE(now, before);
    before = now;
  }
}

TYPED_TEST(ClockContractTest, SteadyTimeMeasuresWhatPassed) {
  const auto before = this->clock.steadyNow();
  letPass(this->clock, 3ms);
  EXPECT_GE(this->clock.steadyNow() - before, 3ms);
}

TYPED_TEST(ClockContractTest, SleepLetsAtLeastItsDurationPass) {
  const Clock& seam = this->clock;
  const auto before = seam.steadyNow();
  seam.sleep(3ms);
  EXPECT_GE(seam.steadyNow() - before, 3ms);
}

TYPED_TEST(ClockContractTest, SleepOfZeroOrLessReturnsAtOnce) {
  const Clock& seam = this->clock;
  for (const auto duration :
       {0ns, std::chrono::nanoseconds(-1h), std::chrono::nanoseconds::min()}) {
    const auto before = seam.steadyNow();
    seam.sleep(duration);
    EXPECT_LT(seam.steadyNow() - before, 10s);
  }
}

TYPED_TEST(ClockContractTest, WallClockShowsADateOfThisAge) {
  using namespace std::chrono;
  EXPECT_GE(this->clock.now(), sys_days(year(2024) / January / 1));
  EXPECT_LT(this->clock.now(), sys_days(year(2100) / January / 1));
}

}  // namespace
}  // namespace lanternfold
