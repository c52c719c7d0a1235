// The text of every kind of view.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "Tests/ViewTree/ViewSamples.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

std::string dumpOf(const View& view) {
  const MetricTextMeasurer measurer;
  return textDump(layOut(view, {200, 100}, {measurer, "Today, 10:30"}));
}

/// `view` with one of its members changed, once for each of them.
std::vector<View> variationsOf(const View& view) {
  std::vector<View> variations;
  const auto with = [&](auto change) {
    View changed = view;
    change(changed.node);
    if (changed != view) variations.push_back(std::move(changed));
  };
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) text->text += "!";
  });
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) text->font.size += 1;
  });
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) text->minimumScale /= 2;
  });
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) {
      text->truncation =
          text->truncation == Truncation::tail ? Truncation::middle : Truncation::tail;
    }
  });
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) text->lineLimit += 1;
  });
  with([](ViewNode& node) {
    if (auto* text = std::get_if<TextNode>(&node)) text->sizedWith += "!";
  });
  with([](ViewNode& node) {
    if (auto* time = std::get_if<DrawingTimeNode>(&node)) time->format = "%@, last update";
  });
  with([](ViewNode& node) {
    if (auto* symbol = std::get_if<SymbolNode>(&node)) symbol->pointSize = 33;
  });
  with([](ViewNode& node) {
    if (auto* symbol = std::get_if<SymbolNode>(&node)) symbol->strength = 0.125;
  });
  with([](ViewNode& node) {
    if (auto* choice = std::get_if<FirstThatFitsNode>(&node)) choice->axes = FitAxes::vertical;
  });
  with([](ViewNode& node) {
    if (auto* rows = std::get_if<WholeRowsNode>(&node)) rows->spacings.back() = 0.5;
  });
  with([](ViewNode& node) {
    if (auto* row = std::get_if<AccessoryRowNode>(&node)) row->besideBoth += 1;
  });
  return variations;
}

TEST(TextDump, TellsTheKindsOfViewsApart) {
  std::set<std::string> dumps;
  const std::vector<View> samples = viewsOfEveryKind();
  for (const View& view : samples) dumps.insert(dumpOf(view));
  EXPECT_EQ(dumps.size(), samples.size() - 1) << "a button with another face shows the first one";
}

TEST(TextDump, TellsEveryMemberOfAView) {
  std::size_t count = 0;
  for (const View& view : viewsOfEveryKind()) {
    for (const View& variation : variationsOf(view)) {
      EXPECT_NE(dumpOf(variation), dumpOf(view));
      ++count;
    }
  }
  EXPECT_GE(count, 17U);
}

TEST(AccessibleDescription, OfEveryKindIsItsNameOrWhatItsPartsSay) {
  for (const View& view : viewsOfEveryKind()) {
    const std::string own = accessibleDescription(view, "Today, 10:30");
    const bool hasWords = std::holds_alternative<TextNode>(view.node) ||
                          std::holds_alternative<DrawingTimeNode>(view.node) ||
                          !view.children.empty();
    EXPECT_EQ(own.empty(), !hasWords) << dumpOf(view);
    const std::string named = accessibleDescription(View(view).accessible("named"), "");
    const bool isTitle = std::holds_alternative<AccessoryRowNode>(view.node);
    EXPECT_EQ(named, isTitle ? "named, " + own : "named");
  }
}

}  // namespace
}  // namespace lanternfold
