// When monitors that change have settled.
#include <gtest/gtest.h>

#include "HostProgram/Display/SettlingPace.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr SettlingPace::Time begin{};

TEST(SettlingPaceTest, EachChangeBeginsTheQuietAnew) {
  SettlingPace pace;
  EXPECT_EQ(pace.change(begin), begin + 100ms);
  EXPECT_EQ(pace.change(begin + 90ms), begin + 190ms);
  EXPECT_EQ(pace.change(begin + 180ms), begin + 280ms);
}

TEST(SettlingPaceTest, ChangesWithoutEndAreLookedAtAfterASecond) {
  SettlingPace pace;
  for (auto time = 0ms; time < 1000ms; time += 50ms) {
    EXPECT_EQ(pace.change(begin + time), begin + std::min(time + 100ms, 1000ms)) << time;
  }
}

TEST(SettlingPaceTest, AfterALookTheNextBurstHasASecondOfItsOwn) {
  SettlingPace pace;
  (void)pace.change(begin);
  pace.settle();
  EXPECT_EQ(pace.change(begin + 950ms), begin + 1050ms);
}

}  // namespace
}  // namespace lanternfold
