#include <gtest/gtest.h>

#include "CommandLine/ObservedMetricsStorage.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SampleConnectionMetrics.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

constexpr auto original = ConnectionMetricsType::original;
constexpr auto adjusted = ConnectionMetricsType::adjusted;

class ObservedMetricsStorageTest : public testing::Test {
 protected:
  void SetUp() override { files_.makeFolder("/data"); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeFileSystem files_{clock_};
  RecordingDiagnosticLog log_;
  std::vector<ConnectionMetricsMap> reports_;
  std::shared_ptr<FileConnectionMetricsStorage> inner_ =
      std::make_shared<FileConnectionMetricsStorage>(
          FileConnectionMetricsStorage::Environment{
              .files = files_, .clock = clock_, .dispatch = dispatch_, .log = log_},
          "/data", "default");
  ObservedMetricsStorage storage_{
      inner_, [this](ConnectionMetricsMap sampled) { reports_.push_back(std::move(sampled)); }};
};

TEST_F(ObservedMetricsStorageTest, AStepThatUnlocksIsReportedWithItsAdjustedCounters) {
  ASSERT_TRUE(storage_.lock());
  storage_.registerMetrics(ConnectionMetrics::empty(), "en0", original);
  storage_.registerMetrics(oneToEight, "en0", adjusted);
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(reports_.size(), 0U) << "the step has not ended yet";
  ASSERT_TRUE(storage_.unlock());
  EXPECT_EQ(reports_,
            std::vector{ConnectionMetricsMap::of({{.name = "en0", .metrics = oneToEight}})});
}

TEST_F(ObservedMetricsStorageTest, AStepThatFailsIsNotReportedAndNotMixedIntoTheNextOne) {
  ASSERT_TRUE(storage_.lock());
  storage_.registerMetrics(oneToEight, "en0", adjusted);
  ASSERT_TRUE(inner_->unlock()) << "the lock lapses";
  ASSERT_TRUE(storage_.lock());
  storage_.registerMetrics(oneToEight, "en1", adjusted);
  ASSERT_TRUE(storage_.unlock());
  EXPECT_EQ(reports_,
            std::vector{ConnectionMetricsMap::of({{.name = "en1", .metrics = oneToEight}})});
}

TEST_F(ObservedMetricsStorageTest, AnUnlockThatFailsEndsNoStep) {
  EXPECT_EQ(storage_.unlock().error().value, LockError::Case::alreadyUnlocked);
  EXPECT_EQ(reports_.size(), 0U);
}

TEST_F(ObservedMetricsStorageTest, KeepsAndForgetsAsTheStorageBelow) {
  EXPECT_TRUE(storage_.isPersistent());
  storage_.registerMetrics(oneToEight, "en0", original);
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(storage_.lastRegisterDate(), clock_.now());
  EXPECT_EQ(storage_.metrics("en0", original), oneToEight);
  EXPECT_EQ(storage_.allMetrics(original), inner_->allMetrics(original));
  storage_.reset();
  EXPECT_EQ(inner_->metrics("en0", original), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
