#include <gtest/gtest.h>

#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "Tests/WidgetHost/Bandwidth/BusyBandwidth.h"
#include "ViewTree/TextDump.h"
#include "WidgetHost/Bandwidth/BandwidthGraph.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorView.h"

namespace lanternfold {
namespace {

class BandwidthMonitorViewTest : public testing::Test {
 protected:
  [[nodiscard]] LaidOutView laidOut(const BandwidthMonitorState& state, Size size) const {
    return layOut(BandwidthMonitorView{state, strings_}.body(size), size,
                  {.measurer = measurer_, .drawingTime = {}});
  }
  void expectGoldenCard(const char* name, const BandwidthMonitorState& state, Size size) const {
    expectGolden(
        std::string(LANTERNFOLD_SOURCE_DIR) + "/Tests/WidgetHost/Bandwidth/Golden/" + name + ".txt",
        textDump(laidOut(state, size)));
  }

  FakeStringTable strings_;
  MetricTextMeasurer measurer_;
};

TEST_F(BandwidthMonitorViewTest, ShowsRatesTotalsAndTheMinute) {
  expectGoldenCard("whole", busyBandwidth(), bandwidthMonitorSize);
}

TEST_F(BandwidthMonitorViewTest, OfAnAdapterThatIsGoneSaysSo) {
  expectGoldenCard("gone",
                   {.adapterName = "Port (en0)", .availability = BandwidthAvailability::gone},
                   bandwidthMonitorMiniSize);
}

void collectTexts(const LaidOutView& view, std::vector<const LaidOutView*>& texts) {
  if (std::holds_alternative<TextNode>(view.node)) texts.push_back(&view);
  for (const LaidOutView& child : view.children) collectTexts(child, texts);
}

void expectInside(const LaidOutView& view, Size size) {
  constexpr double tolerance = 0.01;
  EXPECT_GE(view.frame.left(), -tolerance);
  EXPECT_GE(view.frame.top(), -tolerance);
  EXPECT_LE(view.frame.right(), size.width + tolerance);
  EXPECT_LE(view.frame.bottom(), size.height + tolerance);
  for (const LaidOutView& child : view.children) expectInside(child, size);
}

TEST_F(BandwidthMonitorViewTest, StaysInsideItsCardAtEverySize) {
  const BandwidthMonitorState state = busyBandwidth();
  for (double width = bandwidthMonitorLeastSize.width; width < 700; width += 31) {
    for (double height = bandwidthMonitorLeastSize.height; height < 400; height += 7) {
      const Size size{width, height};
      expectInside(laidOut(state, size), size);
      ASSERT_FALSE(HasFailure()) << width << " x " << height;
    }
  }
}

// A number that changes every second must not move what stands beside it.
TEST_F(BandwidthMonitorViewTest, UnitsStayWhereTheyAre) {
  const auto placeOfUnit = [&](double rate) {
    BandwidthMonitorState state = busyBandwidth();
    state.traffic.minute.back()->received = rate;
    const LaidOutView card = laidOut(state, bandwidthMonitorSize);
    std::vector<const LaidOutView*> texts;
    collectTexts(card, texts);
    const auto unit = std::ranges::find(texts, std::string("MB/s"),
                                        [](const LaidOutView* text) { return text->shownText; });
    return unit == texts.end() ? -1 : (*unit)->frame.left();
  };
  const double place = placeOfUnit(1.23e6);
  EXPECT_GT(place, 0);
  EXPECT_EQ(placeOfUnit(45.6e6), place);
  EXPECT_EQ(placeOfUnit(789e6), place);
}

/// The bars of a colour, from left to right.
std::vector<Rect> barsOf(const View& graph, const char* colour) {
  const MetricTextMeasurer measurer;
  const ColourPalette palette = {{receivedColour, {{1, 0, 0}, {1, 0, 0}}},
                                 {sentColour, {{0, 1, 0}, {0, 1, 0}}},
                                 {"Foreground", {{1, 1, 1}, {1, 1, 1}}}};
  const LaidOutView laidOut = layOut(graph, {120, 82}, {.measurer = measurer, .drawingTime = {}});
  std::vector<Rect> bars;
  for (const DrawCommand& command : makeDrawList(
           laidOut,
           {palette, ColourScheme::light, [](std::string_view line) { ADD_FAILURE() << line; }})) {
    const auto* const fill = std::get_if<FillRoundedRectangle>(&command);
    if (fill != nullptr && fill->colour == palette.at(colour).light) bars.push_back(fill->frame);
  }
  return bars;
}

TEST(BandwidthGraphTest, BarsStandOnTheLineInTheProportionOfTheirRates) {
  TrafficMinute minute;
  minute[0] = {.received = 10e6, .sent = 10e6};
  minute[59] = {.received = 5e6, .sent = 0};
  const View graph = bandwidthGraph(minute, {120, 81});
  // Halved by a line of a point, which leaves forty for each direction.
  EXPECT_EQ(barsOf(graph, receivedColour),
            (std::vector<Rect>{{{0, 0.5}, {2, 40}}, {{118, 20.5}, {2, 20}}}));
  EXPECT_EQ(barsOf(graph, sentColour), (std::vector<Rect>{{{0, 41.5}, {2, 40}}}));
}

TEST(BandwidthGraphTest, TheFaintestTrafficHasABar) {
  TrafficMinute minute;
  minute[3] = {.received = 10e9, .sent = 1};
  const std::vector<Rect> bars = barsOf(bandwidthGraph(minute, {120, 81}), sentColour);
  ASSERT_EQ(bars.size(), 1U);
  EXPECT_EQ(bars.front().size.height, 1);
}

TEST(BandwidthGraphTest, TheLineBreaksWhereNothingWasMeasured) {
  TrafficMinute minute;
  minute.fill(TrafficRate{});
  minute[30].reset();
  const std::vector<Rect> line = barsOf(bandwidthGraph(minute, {120, 81}), "Foreground");
  ASSERT_EQ(line.size(), 2U) << "the rules have less opacity";
  EXPECT_EQ(line[0].size.width, 60);
  EXPECT_EQ(line[1].left(), 62);
  EXPECT_EQ(line[1].size.width, 58);
}

TEST(BandwidthGraphTest, AnAreaOfNothingHasNoGraph) {
  EXPECT_EQ(bandwidthGraph({}, {0, 50}), bandwidthGraph({}, {50, 1}));
  EXPECT_EQ(barsOf(bandwidthGraph({}, {0, 50}), "Foreground"), std::vector<Rect>{});
}

}  // namespace
}  // namespace lanternfold
