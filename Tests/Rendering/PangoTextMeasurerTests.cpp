#include <gtest/gtest.h>

#include "Rendering/PangoTextMeasurer.h"

namespace lanternfold {
namespace {

TEST(PangoTextMeasurer, GrowsWithTheText) {
  const PangoTextMeasurer measurer;
  EXPECT_EQ(measurer.measure("", {13}).width, 0);
  EXPECT_GT(measurer.measure("abc", {13}).width, measurer.measure("ab", {13}).width);
}

TEST(PangoTextMeasurer, ScalesWithTheFont) {
  const PangoTextMeasurer measurer;
  const Size once = measurer.measure("192.168.0.1", {10});
  const Size twice = measurer.measure("192.168.0.1", {20});
  EXPECT_NEAR(twice.width, 2 * once.width, 0.1);
  EXPECT_NEAR(twice.height, 2 * once.height, 0.1);
}

TEST(PangoTextMeasurer, MeasuresMarkupAsPlainText) {
  const PangoTextMeasurer measurer;
  EXPECT_GT(measurer.measure("<b>a</b>", {13}).width, 3 * measurer.measure("a", {13}).width);
}

TEST(PangoTextMeasurer, GivesATightLineTheFontsSize) {
  const PangoTextMeasurer measurer;
  const Font tight{13, FontWeight::bold, FontLeading::tight};
  EXPECT_EQ(measurer.measure("10.54", tight).height, 13);
  EXPECT_GT(measurer.measure("10.54", {13, FontWeight::bold}).height, 13);
}

TEST(PangoTextMeasurer, MakesBoldTextWider) {
  const PangoTextMeasurer measurer;
  EXPECT_GT(measurer.measure("Ethernet", {13, FontWeight::bold}).width,
            measurer.measure("Ethernet", {13}).width);
}

TEST(PangoTextMeasurer, KeepsTheHeightOfTextsInOtherScripts) {
  const PangoTextMeasurer measurer;
  EXPECT_GT(measurer.measure("\u7DB2\u7D61", {13}).width, 0);
  EXPECT_GT(measurer.measure("\u0634\u0628\u0643\u0629", {13}).height, 0);
}

}  // namespace
}  // namespace lanternfold
