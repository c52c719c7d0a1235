#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/ColourFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* all = R"({
  "BackgroundGradientStart": {"light": "#010203", "dark": "#040506"},
  "BackgroundGradientEnd": {"light": "#000000", "dark": "#FFFFFF"},
  "AccentColor": {"light": "#000000", "dark": "#ffffff"},
  "Foreground": {"light": "#000000", "dark": "#FFFFFF"},
  "LabelForeground": {"light": "#000000", "dark": "#FFFFFF"},
  "ReceivedTraffic": {"light": "#000000", "dark": "#FFFFFF"},
  "SentTraffic": {"light": "#000000", "dark": "#FFFFFF"}})";

std::string refusal(std::string_view json) {
  const auto colours = coloursOf(json);
  return colours ? "taken" : colours.error();
}

class ColourFile : public testing::Test {
 protected:
  ColourPalette colours() {
    return readColours(folder_.path(),
                       [this](std::string_view line) { reports_.emplace_back(line); });
  }
  void write(std::string_view text) {
    std::ofstream(folder_.path() / "Colours.json", std::ios::binary) << text;
  }

  TemporaryFolder folder_;
  std::vector<std::string> reports_;
};

TEST_F(ColourFile, HasALightAndADarkValueForEachName) {
  write(all);
  const ColourPalette palette = colours();
  EXPECT_EQ(palette.at("BackgroundGradientStart").light,
            (Rgba{1 / 255.0, 2 / 255.0, 3 / 255.0, 1}));
  EXPECT_EQ(palette.at("BackgroundGradientStart").dark, (Rgba{4 / 255.0, 5 / 255.0, 6 / 255.0, 1}));
  EXPECT_EQ(palette.at("AccentColor").dark, (Rgba{1, 1, 1, 1}));
  EXPECT_THAT(reports_, ElementsAre());
}

TEST_F(ColourFile, OfTheProductHasEveryColourThatTheWidgetsName) {
  const std::filesystem::path assets = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets";
  const ColourPalette palette =
      readColours(assets, [](std::string_view line) { ADD_FAILURE() << line; });
  for (const char* name :
       {gradientStartColour, gradientEndColour, accentColour, foregroundColour, labelColour}) {
    EXPECT_TRUE(palette.contains(name)) << name;
    EXPECT_TRUE(standInColours().contains(name)) << name;
  }
}

TEST_F(ColourFile, ThatIsMissingIsReplacedByGreysAndToldInALine) {
  EXPECT_EQ(colours(), standInColours());
  EXPECT_THAT(reports_, ElementsAre(AllOf(StartsWith("greys stand in for colours: "),
                                          HasSubstr("Colours.json: there is no such file"))));
}

TEST_F(ColourFile, ThatIsBrokenIsReplacedByGreysAndToldInALine) {
  write(R"({"Foreground": {"light": "#FFFFFF", "dark": "white"}})");
  EXPECT_EQ(colours(), standInColours());
  EXPECT_THAT(reports_, ElementsAre(HasSubstr("Colours.json: Foreground is not")));
}

TEST_F(ColourFile, ThatIsTooLargeIsReplacedByGreys) {
  write(std::string(all) + std::string(300'000, ' '));
  EXPECT_EQ(colours(), standInColours());
  EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(ColourFile, ThatIsAFolderIsReplacedByGreys) {
  std::filesystem::create_directory(folder_.path() / "Colours.json");
  EXPECT_EQ(colours(), standInColours());
  EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(ColourFile, ThatLacksAColourTakesThatOneAloneFromTheGreys) {
  write(R"({"Foreground": {"light": "#FFFF00", "dark": "#00FFFF"}})");
  const ColourPalette palette = colours();
  EXPECT_EQ(palette.at("Foreground").light, (Rgba{1, 1, 0, 1}));
  EXPECT_EQ(palette.at("AccentColor"), standInColours().at("AccentColor"));
  EXPECT_THAT(reports_, ElementsAre(HasSubstr("it lacks AccentColor, BackgroundGradientEnd, "
                                              "BackgroundGradientStart, LabelForeground, "
                                              "ReceivedTraffic, SentTraffic")));
}

TEST_F(ColourFile, RefusesWhatIsNoColourFile) {
  for (const char* json : {"", "[]", "1", "null", "{", R"({"A":)"}) {
    EXPECT_EQ(refusal(json), "it is no JSON object") << json;
  }
  for (const char* pair :
       {"1", "{}", R"({"light":"#000000"})", R"({"light":"#000000","dark":1})",
        R"({"light":"#000000","dark":"#00000"})", R"({"light":"#000000","dark":"#0000000"})",
        R"({"light":"#000000","dark":"0000000"})", R"({"light":"#000000","dark":"#00000G"})",
        R"({"light":"#000000","dark":"#-00001"})", R"({"light":"#000000","dark":"# 00001"})",
        R"({"light":"#000000","dark":"#000000","other":1})"}) {
    EXPECT_THAT(refusal(R"({"A":)" + std::string(pair) + "}"), StartsWith("A is not {")) << pair;
  }
  EXPECT_THAT(refusal(std::string(100'000, '[')), HasSubstr("no JSON object"));
}

TEST_F(ColourFile, RefusesMoreColoursThanAnyPaletteHas) {
  std::string json = "{";
  for (int index = 0; index < 257; ++index) {
    json += (index ? "," : "") + ("\"c" + std::to_string(index)) +
            R"(":{"light":"#000000","dark":"#000000"})";
  }
  EXPECT_EQ(refusal(json + "}"), "it has too many colours");
}

}  // namespace
}  // namespace lanternfold
