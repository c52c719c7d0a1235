// What the extension takes on its command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExtensionProgram/ExtensionCommandLine.h"

namespace lanternfold {
namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;

std::string sentenceOf(const Arguments& arguments) {
  const auto parsed = parseExtensionCommandLine(arguments);
  const auto* failure = std::get_if<CommandFailure>(&parsed);
  if (failure == nullptr) return "";
  EXPECT_EQ(failure->status, ExitStatus::badArguments);
  return failure->sentence;
}

TEST(ExtensionCommandLineTest, TakesADescriptorAndTheOptionsOfEveryCommand) {
  const auto parsed = parseExtensionCommandLine(
      Arguments{"--service-fd", "3", "--no-app-group", "--skip-geoip", "--data-dir", "/some/where",
                "--ca-file", "/some/file", "--ipv4-echo", "https://four.example"});
  const auto* choice = std::get_if<ExtensionChoice>(&parsed);
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(choice->serviceDescriptor, 3);
  EXPECT_EQ(choice->monitor.appGroupId, std::nullopt);
  EXPECT_TRUE(choice->monitor.skipGeoIP);
  EXPECT_EQ(choice->dataFolder, "/some/where");
  EXPECT_EQ(choice->certificateAuthoritiesFile, "/some/file");
  EXPECT_EQ(choice->monitor.serviceUrls.ipv4Echo, ServiceUrl::of("https://four.example"));
}

TEST(ExtensionCommandLineTest, TheGroupIsTheProductsUnlessAnotherOneIsGiven) {
  const auto parsed = parseExtensionCommandLine(Arguments{"--service-fd", "0"});
  EXPECT_EQ(std::get<ExtensionChoice>(parsed).monitor.appGroupId,
            "7RKM3PW2ZB.net.quernaple.LanternfoldX");
}

TEST(ExtensionCommandLineTest, WhatIsNoDescriptorIsNamed) {
  for (const char* text : {"1", "2", "-1", "three", "", "3x", "99999999999", "0x3"}) {
    EXPECT_THAT(sentenceOf({"--service-fd", text}), HasSubstr("--service-fd")) << text;
  }
}

TEST(ExtensionCommandLineTest, WhatIsMissingOrTooMuchIsNamed) {
  EXPECT_EQ(sentenceOf({}),
            "needs --service-fd N, the number of an open descriptor, 0 or from 3 on");
  EXPECT_THAT(sentenceOf({"--service-fd", "3", "more"}), HasSubstr("unexpected argument \"more\""));
  EXPECT_THAT(sentenceOf({"--service-fd", "3", "--bogus"}),
              AllOf(HasSubstr("unknown option \"--bogus\""),
                    HasSubstr("\"lanternfold-widget-extension --help\"")));
  EXPECT_THAT(sentenceOf({"--service-fd", "3", "--service-fd", "4"}), HasSubstr("given twice"));
  EXPECT_THAT(sentenceOf({"--service-fd", "3", "--app-group", ".."}),
              HasSubstr("application group"));
}

TEST(ExtensionCommandLineTest, HelpAndVersionAreTexts) {
  for (const char* option : {"--help", "--version"}) {
    const auto parsed = parseExtensionCommandLine(Arguments{option});
    const auto* information = std::get_if<InformationText>(&parsed);
    ASSERT_NE(information, nullptr);
    EXPECT_THAT(information->text,
                HasSubstr(option == std::string("--help") ? "--service-fd" : "extension"));
  }
}

}  // namespace
}  // namespace lanternfold
