// The cards in every language, measured with the pinned fonts: nothing that fits in English is cut.
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "PlatformLinux/System/GettextStringTable.h"
#include "Rendering/PangoTextMeasurer.h"
#include "Rendering/TextLines.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"

namespace lanternfold {
namespace {

/// The whole texts of those that are shown shortened.
void addShortened(const LaidOutView& view, std::set<std::string>& shortened) {
  const auto* text = std::get_if<TextNode>(&view.node);
  for (const ShownLine& line : view.shownLines) {
    if (!line.text.contains("\u2026")) continue;
    shortened.insert(text != nullptr ? text->text : "the time of drawing");
  }
  for (const LaidOutView& child : view.children) addShortened(child, shortened);
}

std::set<std::string> shortenedOf(const CardState& card, const StringTable& strings) {
  // That a script has no typeface of its own among the pinned ones is of no matter here.
  TextLines lines([](std::string_view) {});
  const PangoTextMeasurer measurer(lines);
  std::set<std::string> shortened;
  addShortened(layOut(card.view(strings), widgetSize(card.family),
                      {.measurer = measurer, .drawingTime = "aujourd\u2019hui \u00e0 10:30"}),
               shortened);
  return shortened;
}

bool isOfUsualNames(const CardState& card) {
  for (const char* state : {"_placeholder", "_initial", "_withheld", "_timestamp", "_gone"}) {
    if (card.name.ends_with(state)) return true;
  }
  return false;
}

class LanguageFit : public testing::TestWithParam<const char*> {};

TEST_P(LanguageFit, CutsNothingThatFitsInEnglish) {
  UserLanguage language;
  language.catalogue = GetParam();
  makeGettextSpeak(language);
  const GettextStringTable strings(
      "lanternfold", std::filesystem::path(LANTERNFOLD_BINARY_DIR) / "Translations", language);
  ASSERT_NE(strings.localized("Not connected"), "Not connected") << "the catalogue is not read";
  std::size_t cards = 0;
  for (const CardState& card : cardStates()) {
    if (!isOfUsualNames(card)) continue;
    ++cards;
    EXPECT_EQ(shortenedOf(card, strings), shortenedOf(card, FakeStringTable())) << card.name;
  }
  EXPECT_GE(cards, 20U);
}

INSTANTIATE_TEST_SUITE_P(Languages, LanguageFit,
                         testing::Values("de", "fr", "it", "es", "ja", "zh_CN", "ar", "ru"),
                         [](const auto& language) { return std::string(language.param); });

}  // namespace
}  // namespace lanternfold
