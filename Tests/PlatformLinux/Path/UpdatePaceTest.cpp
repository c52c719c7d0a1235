#include "PlatformLinux/Path/UpdatePace.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A pace driven over virtual time: what changes is a number, what is reported is the number as it
/// is when the report is made.
class UpdatePaceTest : public testing::Test {
 protected:
  void change() {
    ++state_;
    const auto moment = pace_.changed(clock_.steadyNow());
    if (!moment) return;
    dispatch_.mainQueue().after(*moment - clock_.steadyNow(), [this] {
      pace_.reported(clock_.steadyNow());
      reports_.push_back({clock_.steadyNow() - start_, state_});
    });
  }

  void changeEvery(std::chrono::nanoseconds period, std::chrono::nanoseconds duration) {
    for (std::chrono::nanoseconds passed{}; passed < duration; passed += period) {
      change();
      dispatch_.advance(period);
    }
  }

  struct Report {
    std::chrono::nanoseconds when;
    int state;
    friend bool operator==(const Report&, const Report&) = default;
  };

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  std::chrono::steady_clock::time_point start_ = clock_.steadyNow();
  UpdatePace pace_;
  int state_ = 0;
  std::vector<Report> reports_;
};

TEST_F(UpdatePaceTest, ASingleChangeIsReportedAtOnce) {
  change();
  dispatch_.runReady();
  EXPECT_EQ(reports_, (std::vector<Report>{{milliseconds(0), 1}}));
}

TEST_F(UpdatePaceTest, ASecondChangeWaitsForTheGapAndALaterOneDoesNot) {
  change();
  dispatch_.advance(milliseconds(30));
  change();
  dispatch_.advance(milliseconds(500));
  change();
  dispatch_.runReady();
  EXPECT_EQ(reports_, (std::vector<Report>{
                          {milliseconds(0), 1}, {milliseconds(100), 2}, {milliseconds(530), 3}}));
}

TEST_F(UpdatePaceTest, ChangesBeforeADueReportAreCoveredByIt) {
  change();
  change();
  change();
  dispatch_.advance(seconds(5));
  EXPECT_EQ(reports_, (std::vector<Report>{{milliseconds(0), 3}}));
}

TEST_F(UpdatePaceTest, TwoThousandChangesASecondGiveTenReportsASecondAndTheLastState) {
  changeEvery(std::chrono::microseconds(500), seconds(3));
  dispatch_.advance(seconds(1));
  EXPECT_EQ(reports_.size(), 31U);
  EXPECT_EQ(reports_.front(), (Report{milliseconds(0), 1}));
  EXPECT_EQ(reports_.back().state, 6000);
  for (std::size_t i = 1; i < reports_.size(); ++i) {
    EXPECT_GE(reports_[i].when - reports_[i - 1].when, UpdatePace::shortestGap);
  }
}

TEST_F(UpdatePaceTest, AReportThatTookLongStartsTheGapAnew) {
  UpdatePace pace;
  const auto now = clock_.steadyNow();
  EXPECT_EQ(pace.changed(now), now);
  pace.reported(now + milliseconds(250));
  EXPECT_EQ(pace.changed(now + milliseconds(260)), now + milliseconds(350));
}

}  // namespace
}  // namespace lanternfold
