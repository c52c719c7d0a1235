#include <gtest/gtest.h>

#include "NetworkMonitor/Interfaces/WalkingInterfaceResolver.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

class WalkingInterfaceResolverTest : public testing::Test {
 protected:
  void SetUp() override { walker_->machine = {{.name = "en0"}, {.name = "en1"}}; }

  /// Whether `operation` begins a walk of its own: the counters before it are not those after it.
  bool beginsAWalk(const std::function<void()>& operation) {
    (void)reader_->read();
    const auto before = kernel_->readCount();
    operation();
    (void)reader_->read();
    return kernel_->readCount() > before;
  }

  SimulatedClock clock_;
  RecordingDiagnosticLog diagnostics_;
  std::shared_ptr<FakeConnectionMetricsReader> kernel_ =
      std::make_shared<FakeConnectionMetricsReader>();
  std::shared_ptr<FakeInterfaceResolver> walker_ = std::make_shared<FakeInterfaceResolver>();
  std::shared_ptr<RememberingMetricsReader> reader_ = std::make_shared<RememberingMetricsReader>(
      std::unexpected(std::string("none")), kernel_,
      RememberingMetricsReader::Environment{.clock = clock_, .diagnostics = diagnostics_});
  WalkingInterfaceResolver resolver_{walker_, reader_};
};

TEST_F(WalkingInterfaceResolverTest, EveryOperationIsAWalkOfItsOwn) {
  EXPECT_TRUE(beginsAWalk([this] { (void)resolver_.interfaces(); }));
  EXPECT_TRUE(beginsAWalk([this] { (void)resolver_.interfacesExcluding({"en1"}); }));
  EXPECT_TRUE(beginsAWalk([this] { (void)resolver_.interfacesPrefixed("en"); }));
  EXPECT_TRUE(beginsAWalk([this] { (void)resolver_.interfaceNamed("en0"); }));
  EXPECT_FALSE(beginsAWalk([] {}));
}

TEST_F(WalkingInterfaceResolverTest, AnswersAreThoseOfTheWalker) {
  EXPECT_EQ(resolver_.interfaces(), walker_->machine);
  EXPECT_EQ(resolver_.interfacesExcluding({"en1"}), walker_->interfacesExcluding({"en1"}));
  EXPECT_EQ(resolver_.interfacesPrefixed("en"), walker_->machine);
  EXPECT_EQ(resolver_.interfaceNamed("en1")->name, "en1");
  EXPECT_EQ(resolver_.interfaceNamed("en2"), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
