// The settings of an application group, opened when they are first asked for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/PublicInfo/GroupUserDefaults.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {
namespace {

class GroupUserDefaultsTest : public testing::Test {
 protected:
  static std::string textIn(const UserDefaults& suite) {
    const auto look = suite.object("key");
    if (!look || !*look) return "";
    const auto* text = std::get_if<std::string>(&(**look).storage());
    return text == nullptr ? "" : *text;
  }

  FakeUserDefaultsSuites suites_;
  RecordingDiagnosticLog diagnostics_;
  GroupUserDefaults ofGroup_{suites_, "a.group", diagnostics_};
  GroupUserDefaults ofNone_{suites_, std::nullopt, diagnostics_};
};

TEST_F(GroupUserDefaultsTest, AGroupHasItsSuiteAndNoGroupTheStandardOne) {
  ofGroup_.set("key", PropertyListValue(std::string("group")));
  ofNone_.set("key", PropertyListValue(std::string("none")));
  EXPECT_EQ(textIn(*suites_.suite("a.group")), "group");
  EXPECT_EQ(textIn(*suites_.standard()), "none");
  EXPECT_EQ(textIn(ofGroup_), "group");
  ofGroup_.remove("key");
  EXPECT_EQ(textIn(ofGroup_), "");
}

TEST_F(GroupUserDefaultsTest, ASuiteThatCannotBeOpenedIsStoodInForByTheStandardOne) {
  suites_.setRefusing(true);
  ofGroup_.set("key", PropertyListValue(std::string("stand-in")));
  EXPECT_EQ(textIn(*suites_.standard()), "stand-in");
}

TEST_F(GroupUserDefaultsTest, NothingIsOpenedBeforeItIsAskedFor) {
  suites_.setRefusing(true);
  GroupUserDefaults madeWhileRefused(suites_, "a.group", diagnostics_);
  suites_.setRefusing(false);
  madeWhileRefused.set("key", PropertyListValue(std::string("group")));
  EXPECT_EQ(textIn(*suites_.suite("a.group")), "group");
}

TEST_F(GroupUserDefaultsTest, TheFirstFailureToKeepSomethingIsALine) {
  suites_.setDiskFailing(true);
  ofGroup_.set("key", PropertyListValue(std::string("lost")));
  EXPECT_FALSE(ofGroup_.synchronize());
  EXPECT_FALSE(ofGroup_.synchronize());
  EXPECT_EQ(diagnostics_.lines().size(), 1U);
}

TEST_F(GroupUserDefaultsTest, OfTheStandInNoFailureIsSaidASecondTime) {
  suites_.setRefusing(true);
  suites_.setDiskFailing(true);
  ofGroup_.set("key", PropertyListValue(std::string("lost")));
  EXPECT_FALSE(ofGroup_.synchronize());
  EXPECT_THAT(diagnostics_.lines(), testing::IsEmpty());
}

}  // namespace
}  // namespace lanternfold
