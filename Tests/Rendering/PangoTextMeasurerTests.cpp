#include <gtest/gtest.h>

#include "Rendering/PangoTextMeasurer.h"
#include "Rendering/TextLines.h"
#include "Tests/Rendering/ChosenTypefaces.h"

namespace lanternfold {
namespace {

class PangoTextMeasurerTest : public testing::Test {
 protected:
  [[nodiscard]] Size measured(std::string_view text, const Font& font) const {
    return measurer_.measure(text, font);
  }

  ChosenTypefaces typefaces_{manyFolders()};
  std::unique_ptr<TextLines> lines_ =
      std::make_unique<TextLines>([](std::string_view line) { ADD_FAILURE() << line; });
  PangoTextMeasurer measurer_{*lines_};
};

TEST_F(PangoTextMeasurerTest, GrowsWithTheText) {
  EXPECT_EQ(measured("", {13}).width, 0);
  EXPECT_GT(measured("abc", {13}).width, measured("ab", {13}).width);
}

TEST_F(PangoTextMeasurerTest, ScalesWithTheFont) {
  const Size once = measured("192.168.0.1", {10});
  const Size twice = measured("192.168.0.1", {20});
  EXPECT_NEAR(twice.width, 2 * once.width, 0.1);
  EXPECT_NEAR(twice.height, 2 * once.height, 0.1);
}

TEST_F(PangoTextMeasurerTest, MeasuresMarkupAsPlainText) {
  EXPECT_GT(measured("<b>a</b>", {13}).width, 3 * measured("a", {13}).width);
}

TEST_F(PangoTextMeasurerTest, GivesATightLineTheFontsSize) {
  const Font tight{13, FontWeight::bold, FontLeading::tight};
  EXPECT_EQ(measured("10.54", tight).height, 13);
  EXPECT_GT(measured("10.54", {13, FontWeight::bold}).height, 13);
}

TEST_F(PangoTextMeasurerTest, MakesBoldTextWider) {
  EXPECT_GT(measured("Ethernet", {13, FontWeight::bold}).width, measured("Ethernet", {13}).width);
}

// Their typefaces have lines of other heights, and rows would jump apart.
TEST_F(PangoTextMeasurerTest, KeepsTheHeightOfTextsInOtherScripts) {
  const double height = measured("Home Network", {13}).height;
  for (const char* text :
       {"", "\u7DB2\u7D61", "\u0634\u0628\u0643\u0629", "\u0E1A\u0E49\u0E32\u0E19", "\u0918\u0930",
        "\U0001F680", "caf\u0065\u0301"}) {
    EXPECT_EQ(measured(text, {13}).height, height) << text;
  }
}

TEST_F(PangoTextMeasurerTest, MeasuresACharacterOfSeveralCodePointsAsOne) {
  const double rocket = measured("\U0001F680", {13}).width;
  const double family = measured("\U0001F468\u200D\U0001F469\u200D\U0001F467", {13}).width;
  const double flag = measured("\U0001F1E9\U0001F1EA", {13}).width;
  EXPECT_NEAR(family, rocket, 0.1);
  EXPECT_NEAR(flag, rocket, 0.1);
  EXPECT_NEAR(measured("e\u0301", {13}).width, measured("e", {13}).width, 0.1);
}

}  // namespace
}  // namespace lanternfold
