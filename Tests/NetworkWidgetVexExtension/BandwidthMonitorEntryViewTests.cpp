// The tile that opens the bandwidth monitor.
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/BandwidthMonitorEntryView.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

const Size tileSize = widgetSize(WidgetFamily::small);

View tile() {
  const FakeStringTable strings;
  return BandwidthMonitorEntryView{}.body(
      {.strings = strings, .widgetFamily = WidgetFamily::small});
}

const LaidOutView* symbolIn(const LaidOutView& view) {
  if (std::holds_alternative<SymbolNode>(view.node)) return &view;
  for (const LaidOutView& child : view.children) {
    if (const LaidOutView* symbol = symbolIn(child)) return symbol;
  }
  return nullptr;
}

LaidOutView laidOut() {
  const MetricTextMeasurer measurer;
  return layOut(tile(), tileSize, {measurer, ""});
}

TEST(BandwidthMonitorEntryView, IsALinkToTheBandwidthMonitorInItsMiniMode) {
  const View view = tile();
  ASSERT_TRUE(std::holds_alternative<LinkNode>(view.node));
  EXPECT_EQ(std::get<LinkNode>(view.node).url,
            "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1");
}

TEST(BandwidthMonitorEntryView, IsALinkAllOver) {
  EXPECT_EQ(laidOut().frame, (Rect{{0, 0}, tileSize}));
}

TEST(BandwidthMonitorEntryView, HasTheGauge80WideInItsMiddle) {
  const LaidOutView view = laidOut();
  const LaidOutView* gauge = symbolIn(view);
  ASSERT_NE(gauge, nullptr);
  const auto& node = std::get<SymbolNode>(gauge->node);
  EXPECT_EQ(node.name, "Gauge");
  EXPECT_EQ(node.pointSize, std::nullopt) << "it fills its frame";
  EXPECT_EQ(gauge->frame.size.width, 80);
  EXPECT_EQ(gauge->frame.left() + gauge->frame.right(), tileSize.width);
  EXPECT_EQ(gauge->frame.top() + gauge->frame.bottom(), tileSize.height);
}

TEST(BandwidthMonitorEntryView, KeepsTheGaugeAwayFromItsEdges) {
  const LaidOutView view = laidOut();
  EXPECT_EQ(symbolIn(view)->frame.top(), 16);
}

TEST(BandwidthMonitorEntryView, IsWhiteOnTheAccentColour) {
  const ColourPalette palette = {{"AccentColor", {{0, 0.5, 0.5, 1}, {0, 0.25, 0.25, 1}}}};
  EXPECT_EQ(textDump(makeDrawList(laidOut(), {palette, ColourScheme::light, nullptr})),
            "rounded-rectangle 0,0 170x170 #008080FF radius 0\n"
            "symbol 45,16 80x138 #FFFFFFFF Gauge\n");
}

TEST(BandwidthMonitorEntryView, SaysWhatItOpens) {
  const BracketingStringTable strings;
  EXPECT_EQ(accessibleDescription(BandwidthMonitorEntryView{}.body({.strings = strings}), ""),
            "\u00ABBandwidth Monitor\u00BB");
}

TEST(BandwidthMonitorEntryView, ShowsTheSameWhateverTheDate) {
  const FakeStringTable strings;
  const BandwidthMonitorEntryView later{{std::chrono::system_clock::time_point::max()}};
  EXPECT_EQ(later.body({.strings = strings, .widgetFamily = WidgetFamily::small}), tile());
}

}  // namespace
}  // namespace lanternfold
