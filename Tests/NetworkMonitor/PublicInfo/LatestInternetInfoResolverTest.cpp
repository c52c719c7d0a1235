#include "NetworkMonitor/PublicInfo/LatestInternetInfoResolver.h"

namespace lanternfold {
namespace {

/// Keeps every handler; a test reports through them.
class HandlerKeeper final : public InternetInfoResolver {
 public:
  void resolve(UpdateHandler updateHandler) override {
    handlers.push_back(std::move(updateHandler));
  }
  std::vector<UpdateHandler> handlers;
};

class LatestInternetInfoResolverTest : public testing::Test {
 protected:
  void resolve(const std::string& name) {
    latest_->resolve([this, name](const InternetInfo& info, bool complete, std::error_code error) {
      reports_.push_back(name + " " + info.ip.value_or("-") + (complete ? " complete" : "") +
                         (error ? " failed" : ""));
    });
  }

  const std::shared_ptr<HandlerKeeper> keeper_ = std::make_shared<HandlerKeeper>();
  std::shared_ptr<LatestInternetInfoResolver> latest_ =
      std::make_shared<LatestInternetInfoResolver>(keeper_);
  InternetInfo info_;
  std::vector<std::string> reports_;
};

TEST_F(LatestInternetInfoResolverTest, EveryReportOfTheLastResolutionIsPassedOn) {
  resolve("one");
  keeper_->handlers[0](info_, false, std::make_error_code(std::errc::timed_out));
  info_.ip = "203.0.113.7";
  keeper_->handlers[0](info_, true, {});
  EXPECT_EQ(reports_, (std::vector<std::string>{"one - failed", "one 203.0.113.7 complete"}));
}

TEST_F(LatestInternetInfoResolverTest, OneThatIsOvertakenIsSilentFromThenOn) {
  resolve("one");
  keeper_->handlers[0](info_, false, {});
  resolve("two");
  keeper_->handlers[0](info_, false, std::make_error_code(std::errc::operation_canceled));
  keeper_->handlers[0](info_, true, {});
  keeper_->handlers[1](info_, true, {});
  EXPECT_EQ(reports_, (std::vector<std::string>{"one -", "two - complete"}));
}

TEST_F(LatestInternetInfoResolverTest, ReportsComeThoughItsHolderHasLetGo) {
  resolve("one");
  latest_.reset();
  keeper_->handlers[0](info_, true, {});
  EXPECT_EQ(reports_, (std::vector<std::string>{"one - complete"}));
}

TEST(LatestInternetInfoResolverDeathTest, NothingToWrapStopsTheProgram) {
  EXPECT_DEATH(LatestInternetInfoResolver(nullptr), "made around none");
}

}  // namespace
}  // namespace lanternfold
