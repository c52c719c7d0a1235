// The sizes, spacings and texts of the byte meters.
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/BytesMeters.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/NetworkWidgetVexExtension/ViewDump.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;

TEST(BytesCircularMeter, Is36PointsSquareWithSmallTextsWhenSmall) {
  const BytesCircularMeter meter{{10 << 20, "\u2193", "Received"}, BytesCircularMeter::Size::small};
  EXPECT_EQ(dumpOf(meter.body(environment), {36, 36}),
            "frame 0,0 36x36 width 36 height 36 centre-centre -- \"Received 10 MB\"\n"
            "  zstack 0,0 36x36 centre-centre -- \"\u2193, 10, MB\"\n"
            "    circle 0,0 36x36 line 2\n"
            "    padding 6.4,0 23.2x36 5 5 5 5 -- \"\u2193, 10, MB\"\n"
            "      vstack 11.4,5 13.2x26 centre spacing -1.5 -- \"\u2193, 10, MB\"\n"
            "        offset 15.8,5 4.5x9 0,-1 -- \"\u2193\"\n"
            "          text 15.8,4 4.5x9 down-to 0.6 9 tight \"\u2193\"\n"
            "        text 11.4,12.5 13.2x11 down-to 0.6 11 bold tight \"10\"\n"
            "        offset 13.5,22 9x9 0,1 -- \"MB\"\n"
            "          text 13.5,23 9x9 down-to 0.6 9 tight \"MB\"\n");
}

TEST(BytesCircularMeter, Is42PointsSquareWithLargerTextsElsewhere) {
  for (const auto size : {BytesCircularMeter::Size::automatic, BytesCircularMeter::Size::large}) {
    const std::string dump =
        dumpOf(BytesCircularMeter{{10 << 20, "\u2193", "Received"}, size}.body(environment));
    EXPECT_THAT(dump, HasSubstr("42x42 width 42 height 42"));
    EXPECT_THAT(dump, HasSubstr("10 tight \"\u2193\""));
    EXPECT_THAT(dump, HasSubstr("13 bold tight \"10\""));
    EXPECT_THAT(dump, HasSubstr("10 tight \"MB\""));
  }
}

TEST(BytesCircularMeter, KeepsLongNumbersWholeInsideTheCircle) {
  const BytesCircularMeter meter{{11'319'153'550, "\u2193", "Received"}};
  EXPECT_THAT(dumpOf(meter.body(environment)), HasSubstr("\"10.54\"\n"));
}

TEST(BytesCircularMeter, NeverCountsInBytesOrPetabytes) {
  const auto shown = [](std::uint64_t byteCount) {
    return dumpOf(BytesCircularMeter{{byteCount, "\u2193", "Received"}}.body(environment));
  };
  for (const std::uint64_t few : {0ULL, 1ULL, 1023ULL, 1024ULL}) {
    EXPECT_THAT(shown(few), HasSubstr("\"KB\"")) << few;
  }
  EXPECT_THAT(shown(0), HasSubstr("\"0\"")) << "no word for zero";
  EXPECT_THAT(shown(1ULL << 20), HasSubstr("\"MB\""));
  EXPECT_THAT(shown(1ULL << 30), HasSubstr("\"GB\""));
  for (const std::uint64_t many : {1ULL << 40, 1ULL << 50, ~0ULL}) {
    EXPECT_THAT(shown(many), HasSubstr("\"TB\"")) << many;
  }
}

TEST(BytesMeters, ShowReceivedThenSentBytesWithArrowsAndNames) {
  ConnectionMetrics metrics;
  metrics.recvBytes = 5;
  metrics.sentBytes = 7;
  EXPECT_EQ(bytesMeterFigures(metrics, strings),
            (std::vector<BytesMeterFigure>{{5, "\u2193", "Received"}, {7, "\u2191", "Sent"}}));
}

/// The sizes of the bold texts of `view`.
void addBoldSizes(const LaidOutView& view, std::vector<double>& sizes) {
  if (std::holds_alternative<TextNode>(view.node) && view.shownFont.weight == FontWeight::bold) {
    sizes.push_back(view.shownFont.size);
  }
  for (const LaidOutView& child : view.children) addBoldSizes(child, sizes);
}

// "10.54" once stood beside a larger "3.85".
TEST(BytesMeters, SetTheNumbersOfAPairInOneSize) {
  const MetricTextMeasurer measurer;
  ConnectionMetrics metrics;
  metrics.recvBytes = 11'319'153'550;
  metrics.sentBytes = 4'136'124'909;
  std::vector<double> sizes;
  addBoldSizes(layOut(HBytesMeters{bytesMeterFigures(metrics, strings)}.body(environment), {89, 42},
                      {measurer, ""}),
               sizes);
  ASSERT_EQ(sizes.size(), 2U);
  EXPECT_LT(sizes.front(), 13) << "it would not fit";
  EXPECT_EQ(sizes.front(), sizes.back());
}

// The dots below Arabic letters would touch the ring.
TEST(BytesMeters, DrawAUnitLowerOnlyWhereItsLettersStandOnTheLine) {
  const FakeStringTable arabic(
      std::map<std::string, std::string, std::less<>>{{"MB", "\u0645.\u0628"}});
  const BytesMeterFigure figure{10 << 20, "\u2193", "Received"};
  EXPECT_THAT(dumpOf(BytesCircularMeter{figure}.body(environment)), HasSubstr(" 0,0.8 -- \"MB\""));
  EXPECT_THAT(dumpOf(BytesCircularMeter{figure}.body({arabic})),
              HasSubstr(" 0,0 -- \"\u0645.\u0628\""));
}

TEST(BytesMeters, StandInARowWithASpacingOf5) {
  const HBytesMeters meters{bytesMeterFigures({}, strings)};
  EXPECT_THAT(dumpOf(meters.body(environment), {89, 42}),
              HasSubstr("hstack 0,0 89x42 centre spacing 5"));
}

TEST(BytesMeters, StandInAColumn) {
  const VBytesMeters meters{bytesMeterFigures({}, strings)};
  EXPECT_THAT(dumpOf(meters.body(environment), {42, 89}), HasSubstr("vstack 0,0 42x89 centre"));
}

}  // namespace
}  // namespace lanternfold
