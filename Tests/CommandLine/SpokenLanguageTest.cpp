// In which language the commands speak: that of the user, but for what scripts read.
#include <sstream>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Wiring/DrawingLanguage.h"

namespace lanternfold {
namespace {

class SpokenLanguageTest : public testing::Test {
 protected:
  /// What the command asks of its machine.
  TextLanguage textsOf(const std::vector<std::string>& arguments) {
    std::optional<MachineOptions> asked;
    EXPECT_EQ(runProgram(arguments, console_,
                         [&](const MachineOptions& options) -> const Machine& {
                           asked = options;
                           return fake_.machine;
                         }),
              ExitStatus::done);
    return asked.value().texts;
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
  Console console_{.output = output_, .errors = errors_};
};

TEST_F(SpokenLanguageTest, JsonOfRecordsIsEnglish) {
  for (const char* command : {"interfaces", "state", "wifi"}) {
    EXPECT_EQ(textsOf({command, "--json"}), TextLanguage::english) << command;
  }
  EXPECT_EQ(textsOf({"record", "--once", "--json"}), TextLanguage::english);
}

TEST_F(SpokenLanguageTest, TextIsTheUsers) {
  for (const char* command : {"interfaces", "state", "wifi"}) {
    EXPECT_EQ(textsOf({command}), TextLanguage::users) << command;
  }
}

TEST_F(SpokenLanguageTest, JsonOfViewsIsTheUsers) {
  EXPECT_EQ(textsOf({"timeline", "BandwidthMonitorWidget", "--json"}), TextLanguage::users);
  EXPECT_EQ(textsOf({"timeline", "BandwidthMonitorWidget"}), TextLanguage::users);
}

TEST_F(SpokenLanguageTest, TimeOfDrawingIsInTheLanguageOfTheTexts) {
  EXPECT_THAT(drawingTimeText(fake_.machine), testing::StartsWith("Today, "));
  fake_.machine.language.dateLocale = "de_AT";
  EXPECT_THAT(drawingTimeText(fake_.machine), testing::StartsWith("heute, "));
}

TEST_F(SpokenLanguageTest, PicturesFollowTheDirectionOfTheLanguage) {
  EXPECT_EQ(layoutDirection(fake_.machine.language), LayoutDirection::leftToRight);
  fake_.machine.language.isRightToLeft = true;
  EXPECT_EQ(layoutDirection(fake_.machine.language), LayoutDirection::rightToLeft);
}

TEST_F(SpokenLanguageTest, PicturesAreToldWhichLanguagesCharactersToShow) {
  EXPECT_EQ(languageTag(fake_.machine.language), "en");
  fake_.machine.language.catalogue = "zh_CN";
  EXPECT_EQ(languageTag(fake_.machine.language), "zh-CN");
}

TEST_F(SpokenLanguageTest, ByteCountsOfTheTableHaveTheSeparatorOfTheLanguage) {
  fake_.strings.setDecimalSeparator(",");
  fake_.addEthernet("en0", {192, 168, 1, 20});
  const std::vector<std::string> arguments{"interfaces"};
  EXPECT_EQ(runProgram(arguments, console_,
                       [&](const MachineOptions&) -> const Machine& { return fake_.machine; }),
            ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::HasSubstr("1,5 MB"));
}

}  // namespace
}  // namespace lanternfold
