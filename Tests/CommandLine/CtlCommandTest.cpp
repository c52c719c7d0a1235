// `ctl` as a user meets it: lines and exit status, over a host of fakes.
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using Widget = FakeWidgetControl::Widget;

class CtlCommandTest : public testing::Test {
 protected:
  ExitStatus run(std::vector<std::string> arguments) {
    output_.str({});
    errors_.str({});
    arguments.insert(arguments.begin(), "ctl");
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  std::string written(const std::vector<std::string>& arguments) {
    EXPECT_EQ(run(arguments), ExitStatus::done);
    EXPECT_EQ(errors_.str(), "");
    return output_.str();
  }
  void expectFailure(ExitStatus status, const std::vector<std::string>& arguments,
                     const std::string& text) {
    EXPECT_EQ(run(arguments), status) << testing::PrintToString(arguments);
    EXPECT_EQ(output_.str(), "");
    EXPECT_THAT(errors_.str(), MatchesRegex("lanternfold-widgets: [^\n]+\n"));
    EXPECT_THAT(errors_.str(), HasSubstr(text));
  }

  FakeMachine fake_;
  FakeWidgetControl& host_ = fake_.widgetControl;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(CtlCommandTest, AddWritesTheIdOfTheNewWidget) {
  EXPECT_EQ(written({"add", "PanoramicNetworkStateWidget"}), "w1\n");
  EXPECT_EQ(written({"add", "NetworkAdapterWidget", "--family", "medium", "--adapter", "eth0"}),
            "w2\n");
  EXPECT_THAT(
      host_.widgets(),
      ElementsAre(
          Widget{.id = "w1", .kind = "PanoramicNetworkStateWidget", .family = "large"},
          Widget{
              .id = "w2", .kind = "NetworkAdapterWidget", .family = "medium", .adapter = "eth0"}));
}

TEST_F(CtlCommandTest, ListIsATable) {
  (void)written({"add", "NetworkAdapterWidget", "--family", "medium", "--adapter", "eth0"});
  (void)written({"add", "PanoramicNetworkStateWidget"});
  EXPECT_EQ(written({"list"}),
            "Id  Widget                       Size    Adapter  Monitor   X   Y\n"
            "w1  NetworkAdapterWidget         medium  eth0     DP-1     24  48\n"
            "w2  PanoramicNetworkStateWidget  large            DP-1     24  48\n");
}

TEST_F(CtlCommandTest, ListAsJsonIsOneArray) {
  EXPECT_EQ(written({"list", "--json"}), "[]\n");
  (void)written({"add", "NetworkAdapterWidget", "--adapter", "eth0"});
  EXPECT_EQ(written({"list", "--json"}),
            R"([{"id":"w1","kind":"NetworkAdapterWidget","family":"large",)"
            R"("configuration":{"adapter":{"identifier":"eth0","display":"eth0"}},)"
            R"("monitor":"DP-1","x":24,"y":48}])"
            "\n");
}

TEST_F(CtlCommandTest, RemoveAndReloadNameAWidget) {
  (void)written({"add", "PanoramicNetworkStateWidget"});
  (void)written({"add", "PanoramicNetworkStateWidget"});
  EXPECT_EQ(written({"reload", "w2"}), "");
  EXPECT_EQ(written({"reload"}), "");
  EXPECT_EQ(written({"remove", "w1"}), "");
  ASSERT_EQ(host_.widgets().size(), 1U);
  EXPECT_EQ(host_.widgets().front().reloads, 2);
  for (const char* verb : {"remove", "reload"}) {
    expectFailure(ExitStatus::failed, {verb, "w1"}, "there is no widget");
  }
}

TEST_F(CtlCommandTest, QuitPutsThemAway) {
  EXPECT_EQ(written({"quit"}), "");
  EXPECT_TRUE(host_.hasQuit());
}

TEST_F(CtlCommandTest, WithoutAHostEachSaysWhatToDo) {
  host_.failWith({.cause = WidgetControlFailure::Cause::noHost,
                  .sentence = "no widgets are shown; start them"});
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"list"},
                                                    {"list", "--json"},
                                                    {"add", "PanoramicNetworkStateWidget"},
                                                    {"remove", "w1"},
                                                    {"reload"},
                                                    {"quit"}}) {
    expectFailure(ExitStatus::failed, arguments, "no widgets are shown; start them");
  }
}

TEST_F(CtlCommandTest, WhatAHostSaysStandsBehindTheProgramsName) {
  for (const auto& [said, written] : std::vector<std::pair<std::string, std::string>>{
           {"No widget on the desktop has the id \"A\"",
            "no widget on the desktop has the id \"A\""},
           {"An adapter's name has at most 64 bytes", "an adapter's name has at most 64 bytes"},
           {"BandwidthMonitorWidget comes in small", "BandwidthMonitorWidget comes in small"},
           {"no widgets are shown", "no widgets are shown"},
           {"\xc3\x84", "\xc3\x84"},
           {"No", "no"}}) {
    host_.failWith({.cause = WidgetControlFailure::Cause::refused, .sentence = said});
    expectFailure(ExitStatus::failed, {"remove", "w1"}, "lanternfold-widgets: " + written + "\n");
  }
}

TEST_F(CtlCommandTest, WhatIsNotUnderstoodReachesNobody) {
  expectFailure(ExitStatus::badArguments, {"add", "Bogus"}, "unknown widget kind \"Bogus\"");
  expectFailure(ExitStatus::badArguments, {"add", "PanoramicNetworkStateWidget", "--family", "big"},
                "unknown family \"big\"");
  expectFailure(ExitStatus::badArguments, {"add", "NetworkAdapterWidget", "--family", "small"},
                "has no small family");
  expectFailure(ExitStatus::badArguments,
                {"add", "PanoramicNetworkStateWidget", "--adapter", "eth0"}, "--adapter");
  expectFailure(ExitStatus::badArguments, {"add"}, "KIND");
  expectFailure(ExitStatus::badArguments, {"remove"}, "ID");
  expectFailure(ExitStatus::badArguments, {"quit", "now"}, "\"now\"");
  expectFailure(ExitStatus::badArguments, {"bogus"}, "\"bogus\"");
  expectFailure(ExitStatus::badArguments, {}, "ctl");
  EXPECT_THAT(host_.widgets(), IsEmpty());
}

TEST_F(CtlCommandTest, ANameThatNoInterfaceCanHaveReachesNobody) {
  for (const std::string& name :
       {std::string(16, 'e'), std::string(100'000, 'x'), std::string("en/0"), std::string("en 0"),
        std::string("en\t0"), std::string("en\x1b[31m"), std::string("en\xff"), std::string(".."),
        std::string("en0:1")}) {
    expectFailure(ExitStatus::badArguments, {"add", "NetworkAdapterWidget", "--adapter", name},
                  "--adapter needs an interface's name, and none can be called \"");
    EXPECT_LT(errors_.str().size(), 250U);
  }
  EXPECT_THAT(host_.widgets(), IsEmpty());
  (void)written({"add", "NetworkAdapterWidget", "--adapter", "auto"});
  (void)written({"add", "NetworkAdapterWidget", "--adapter", std::string(15, 'e')});
  (void)written({"add", "NetworkAdapterWidget", "--adapter", "en<b>\u00e9\u4e2d"});
  EXPECT_EQ(host_.widgets().size(), 3U);
}

TEST_F(CtlCommandTest, AnEmptyIdIsNotAllOfThem) {
  (void)written({"add", "PanoramicNetworkStateWidget"});
  for (const char* verb : {"remove", "reload"}) {
    expectFailure(ExitStatus::badArguments, {verb, ""},
                  "needs a widget's id, not \"\"; \"lanternfold-widgets ctl list\" shows them");
  }
  ASSERT_EQ(host_.widgets().size(), 1U);
  EXPECT_EQ(host_.widgets().front().reloads, 0);
}

TEST_F(CtlCommandTest, AnIdThatNoWidgetCanHaveReachesNobodyAndIsShownSafely) {
  (void)written({"add", "PanoramicNetworkStateWidget"});
  for (const char* verb : {"remove", "reload"}) {
    expectFailure(
        ExitStatus::badArguments, {verb, "\xff\xfe"},
        "needs a widget's id, not \"\\xff\\xfe\"; \"lanternfold-widgets ctl list\" shows");
    expectFailure(ExitStatus::badArguments, {verb, std::string(120'000, '7')},
                  "needs a widget's id, not \"" + std::string(64, '7') + "\u2026\"; ");
    expectFailure(ExitStatus::failed, {verb, std::string(256, '7')}, "there is no widget");
  }
  EXPECT_EQ(host_.widgets().size(), 1U);
}

TEST_F(CtlCommandTest, AnAnswerThatIsNoListIsAFailure) {
  for (const char* answer : {"", "{}", "[1]", "[", "null"}) {
    host_.setList(answer);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"list"}, {"list", "--json"}}) {
      expectFailure(ExitStatus::failed, arguments, "no list");
    }
  }
}

TEST_F(CtlCommandTest, OddMembersAreEmptyCellsAndNeverEscapeSequences) {
  host_.setList(
      R"([{"id":7,"kind":"\u001b[31m","configuration":{"adapter":3},"x":"far","y":1.5}])");
  const std::string table = written({"list"});
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(table,
            "Id  Widget    Size  Adapter  Monitor    X  Y\n"
            "7   \\x1b[31m                          far\n");
}

}  // namespace
}  // namespace lanternfold
