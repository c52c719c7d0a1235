// `show` as a user meets it: what the host is started with, and what becomes of a failure.
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Manner = FakeHostStarter::Manner;
using Start = FakeHostStarter::Start;

class ShowCommandTest : public testing::Test {
 protected:
  ExitStatus run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "show");
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }

  FakeMachine fake_;
  FakeHostStarter& starter_ = fake_.hostStarter;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(ShowCommandTest, TheHostTakesThisProgramsPlace) {
  starter_.failWith(workFailed("there is no host"));
  EXPECT_EQ(run({}), ExitStatus::failed);
  EXPECT_THAT(starter_.starts(), ElementsAre(Start{Manner::inItsPlace, {}}));
  EXPECT_EQ(errors_.str(), "lanternfold-widgets: there is no host\n");
}

TEST_F(ShowCommandTest, DetachedItReturnsWhenTheWidgetsAreShown) {
  EXPECT_EQ(run({"--detach"}), ExitStatus::done);
  EXPECT_THAT(starter_.starts(), ElementsAre(Start{Manner::detached, {}}));
  EXPECT_EQ(output_.str() + errors_.str(), "");
}

TEST_F(ShowCommandTest, TheHostGetsTheOptions) {
  EXPECT_EQ(run({"--detach", "--refresh-interval", "60", "--skip-geoip", "--data-dir", "/data"}),
            ExitStatus::done);
  EXPECT_THAT(starter_.starts(),
              ElementsAre(Start{Manner::detached,
                                {"--skip-geoip", "--data-dir=/data", "--refresh-interval=60"}}));
}

TEST_F(ShowCommandTest, WhatTheHostHasSaidIsNotSaidAgain) {
  starter_.failWith({.status = ExitStatus::badArguments, .sentence = {}});
  EXPECT_EQ(run({"--detach"}), ExitStatus::badArguments);
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(ShowCommandTest, WhatIsNotUnderstoodStartsNothing) {
  for (const char* interval : {"9", "86401", "1e2", "-60", "", " 60", "5m", "99999999999"}) {
    errors_.str({});
    EXPECT_EQ(run({"--refresh-interval", interval}), ExitStatus::badArguments) << interval;
    EXPECT_THAT(errors_.str(), HasSubstr("--refresh-interval takes a whole number of seconds"));
  }
  EXPECT_EQ(run({"--app-group", "/"}), ExitStatus::badArguments);
  EXPECT_EQ(run({"now"}), ExitStatus::badArguments);
  EXPECT_THAT(starter_.starts(), IsEmpty());
}

}  // namespace
}  // namespace lanternfold
