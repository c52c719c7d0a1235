// A short run of the simulation, and what a failing one tells.
#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Simulation/LongRun.h"
#include "Tests/Simulation/SimulationRun.h"

namespace lanternfold::simulation {
namespace {

using std::chrono::days;
using std::chrono::hours;
using testing::HasSubstr;

TEST(SimulationTest, NoInvariantBreaksInAShortRun) {
  const LongRunOptions options{.firstSeed = 1, .seeds = 40, .length = hours(6)};
  const auto result = runSeeds(options, [](const SimulationResult&) {});
  for (const auto& violation : result.violations) ADD_FAILURE() << report(violation, hours(6));
  EXPECT_EQ(result.seedsRun, 40U);
  EXPECT_EQ(result.longest, hours(6));
  EXPECT_GT(result.counts.of(Happening::sampled), 4'000U);
  EXPECT_GT(result.counts.of(Happening::counterWrapped), 0U);
  EXPECT_GT(result.counts.of(Happening::twoHolders), 0U);
  EXPECT_GT(result.counts.of(Happening::programKilled), 0U);
}

TEST(SimulationTest, TheSameSeedIsTheSameRun) {
  for (const std::uint64_t seed : {3U, 9U, 13U}) {
    const auto first = simulate(seed, hours(8));
    const auto second = simulate(seed, hours(8));
    EXPECT_EQ(first.fingerprint, second.fingerprint) << "seed " << seed;
    EXPECT_EQ(first.story, second.story) << "seed " << seed;
  }
}

TEST(SimulationTest, AnotherSeedIsAnotherRun) {
  EXPECT_NE(simulate(1, hours(1)).fingerprint, simulate(2, hours(1)).fingerprint);
}

// So that a seed that fails in a long run is replayed by a run of any other length.
TEST(SimulationTest, ALongerRunBeginsLikeAShorterOne) {
  const auto shorter = simulate(9, hours(4));
  const auto longer = simulate(9, hours(8));
  EXPECT_LT(shorter.counts.of(Happening::sampled), longer.counts.of(Happening::sampled));
  EXPECT_EQ(shorter.story.substr(0, shorter.story.find('\n')),
            longer.story.substr(0, longer.story.find('\n')));
}

// Two recorders that start at once, on a disk that takes no time and never fails.
TEST(SimulationTest, TheLockKeepsTwoOrderlyRecordersApart) {
  const Profile profile{.is32bitCapped = true, .hasSecondRecorder = true, .hasOneShots = true};
  ASSERT_TRUE(profile.isOrderly());
  const auto result = simulate(1, days(1), profile);
  EXPECT_EQ(result.violation, std::nullopt) << result.story;
  EXPECT_EQ(result.counts.of(Happening::twoHolders), 0U);
  EXPECT_EQ(result.counts.of(Happening::disturbedSample), 0U);
  EXPECT_EQ(result.counts.of(Happening::sampleFailed), 0U);
}

TEST(SimulationTest, EachStorageIsSimulated) {
  for (const auto storage : {StorageKind::file, StorageKind::userDefaults, StorageKind::memory}) {
    const auto result = simulate(1, days(1), {.storage = storage, .is32bitCapped = true});
    EXPECT_EQ(result.violation, std::nullopt) << result.story;
    EXPECT_GT(result.counts.of(Happening::sampled), 500U);
    EXPECT_EQ(result.counts.of(Happening::saved) > 0, storage == StorageKind::file);
  }
}

TEST(SimulationTest, AViolationIsReportedWithItsStoryAndTheCommandThatReplaysIt) {
  const SimulationResult result{.seed = 123,
                                .simulated = std::chrono::hours(26),
                                .violation = "program 1: went back",
                                .story = "The world: a file\n"};
  EXPECT_EQ(report(result, days(21)),
            "Seed 123 breaks a rule after 1d 02:00:00.000000: program 1: went back\n"
            "The world: a file\n"
            "Replay: Scripts/simulate --seed 123\n");
  EXPECT_THAT(report(result, days(30)), HasSubstr("Scripts/simulate --seed 123 --weeks 5\n"));
}

}  // namespace
}  // namespace lanternfold::simulation
