// What the host takes on its command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/HostCommandLine.h"

namespace lanternfold {
namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;

std::string sentenceOf(const Arguments& arguments) {
  const auto parsed = parseHostCommandLine(arguments);
  const auto* failure = std::get_if<CommandFailure>(&parsed);
  if (failure == nullptr) return "";
  EXPECT_EQ(failure->status, ExitStatus::badArguments);
  return failure->sentence;
}

TEST(HostCommandLineTest, NeedsNothing) {
  const auto parsed = parseHostCommandLine(Arguments{});
  const auto* choice = std::get_if<HostChoice>(&parsed);
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(choice->refreshInterval, std::chrono::minutes(5));
  EXPECT_EQ(choice->dataFolder, std::nullopt);
}

TEST(HostCommandLineTest, TakesAnIntervalAndTheOptionsOfEveryCommand) {
  const auto parsed = parseHostCommandLine(
      Arguments{"--refresh-interval", "60", "--skip-geoip", "--data-dir", "/some/where"});
  const auto* choice = std::get_if<HostChoice>(&parsed);
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(choice->refreshInterval, std::chrono::seconds(60));
  EXPECT_EQ(choice->dataFolder, "/some/where");
  EXPECT_TRUE(choice->common.services.skipGeoIP);
}

TEST(HostCommandLineTest, TheIntervalsBoundsBelongToIt) {
  for (const char* text : {"10", "86400"}) {
    EXPECT_EQ(sentenceOf({"--refresh-interval", text}), "") << text;
  }
  for (const char* text : {"9", "86401", "0", "-60", "", "1e3", "60s", "99999999999999999999"}) {
    EXPECT_THAT(sentenceOf({"--refresh-interval", text}),
                HasSubstr("--refresh-interval takes a whole number of seconds from 10 to 86400"))
        << text;
  }
}

TEST(HostCommandLineTest, SomebodyMayWaitForItsStart) {
  const auto parsed = parseHostCommandLine(Arguments{"--started-fd", "7"});
  EXPECT_EQ(std::get<HostChoice>(parsed).startedDescriptor, 7);
  for (const char* text : {"0", "2", "-1", "", "x", "3x", "99999999999"}) {
    EXPECT_THAT(sentenceOf({"--started-fd", text}), HasSubstr("--started-fd takes the number"))
        << text;
  }
}

TEST(HostCommandLineTest, WhatIsWrongIsNamed) {
  EXPECT_THAT(sentenceOf({"more"}), HasSubstr("unexpected argument \"more\""));
  EXPECT_THAT(sentenceOf({"--bogus"}), HasSubstr("\"lanternfold-widget-host --help\""));
  EXPECT_THAT(sentenceOf({"--app-group", ".."}), HasSubstr("application group"));
}

TEST(HostCommandLineTest, HelpAndVersionAreTexts) {
  for (const char* option : {"--help", "--version"}) {
    const auto parsed = parseHostCommandLine(Arguments{option});
    const auto* text = std::get_if<InformationText>(&parsed);
    ASSERT_NE(text, nullptr) << option;
    EXPECT_THAT(text->text, HasSubstr("lanternfold-widget-host")) << option;
  }
}

}  // namespace
}  // namespace lanternfold
