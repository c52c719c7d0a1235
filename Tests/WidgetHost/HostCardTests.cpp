// What the host's own cards look like, node by node.
#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/HitTest.h"
#include "ViewTree/TextDump.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

const FakeStringTable strings;

View someWidget(WidgetFamily family) {
  return networkWidget(text("Something", {}),
                       {.strings = strings, .widgetFamily = family, .showsTimestamp = true});
}

struct HostCard {
  std::string name;
  WidgetFamily family;
  View view;

  [[nodiscard]] LaidOutView laidOut() const {
    const MetricTextMeasurer measurer;
    return layOut(view, widgetSize(family), {.measurer = measurer, .drawingTime = "Today, 10:30"});
  }
  friend void PrintTo(const HostCard& card, std::ostream* stream) { *stream << card.name; }
};

std::vector<HostCard> hostCards() {
  using enum WidgetFamily;
  return {{"empty_medium", medium, emptyCard(strings)},
          {"unanswered_small", small, unansweredCard(strings, small)},
          {"quiet_small", small, quietCard(strings, small)},
          {"quiet_medium", medium, quietCard(strings, medium)},
          {"quiet_large", large, quietCard(strings, large)},
          {"stale_small", small, staleCard(someWidget(small), strings)}};
}

class HostCardGolden : public testing::TestWithParam<HostCard> {};

TEST_P(HostCardGolden, LooksAsBlessed) {
  expectGolden(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Tests/WidgetHost/Golden" /
                   (GetParam().name + ".txt"),
               textDump(GetParam().laidOut()));
}

INSTANTIATE_TEST_SUITE_P(Cards, HostCardGolden, testing::ValuesIn(hostCards()),
                         [](const auto& card) { return card.param.name; });

/// Whether a text below is shown shortened.
bool isAnythingCut(const LaidOutView& view) {
  for (const ShownLine& line : view.shownLines) {
    if (line.text.contains("\u2026")) return true;
  }
  return std::ranges::any_of(view.children, isAnythingCut);
}

TEST(HostCards, NothingIsCutInAnyFamily) {
  for (const HostCard& card : hostCards()) EXPECT_FALSE(isAnythingCut(card.laidOut())) << card.name;
}

TEST(HostCards, TheButtonThatTriesAgainCanBePressed) {
  for (const HostCard& card : hostCards()) {
    if (!card.name.starts_with("quiet") && !card.name.starts_with("unanswered")) continue;
    const LaidOutView laidOut = card.laidOut();
    const Size size = widgetSize(card.family);
    std::size_t pressed = 0;
    for (double y = 0; y < size.height; y += 2) {
      const LaidOutView* const hit = interactiveViewAt(laidOut, {size.width / 2, y});
      if (hit == nullptr) continue;
      ++pressed;
      EXPECT_EQ(std::get<ButtonNode>(hit->node).intent, tryAgainIntent);
      EXPECT_EQ(hit->accessibleDescription, "Try again");
    }
    EXPECT_GE(pressed, 8U) << card.name << ": high enough for a pointer";
  }
}

TEST(HostCards, AStaleCardKeepsItsButtonsAndSaysThatItIsOne) {
  const HostCard card{"stale", WidgetFamily::small,
                      staleCard(someWidget(WidgetFamily::small), strings)};
  const LaidOutView laidOut = card.laidOut();
  const LaidOutView* const hit = interactiveViewAt(laidOut, {15, 155});
  ASSERT_NE(hit, nullptr);
  EXPECT_EQ(std::get<ButtonNode>(hit->node).intent, "RefreshAppIntent");
  const std::string said = accessibleDescription(card.view, "now");
  EXPECT_THAT(said, testing::HasSubstr("Not up to date, since the last updates have failed"));
  EXPECT_THAT(said, testing::Not(testing::HasSubstr("Last update"))) << "it is not of now";
}

}  // namespace
}  // namespace lanternfold
