#include <filesystem>

#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/ColourFile.h"
#include "Rendering/Gradients.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Rendering/PaintedPixels.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"

namespace lanternfold {
namespace {

constexpr Rgba black{0, 0, 0, 1};
constexpr Rgba red{1, 0, 0, 1};
constexpr Rgba blue{0, 0, 1, 1};

/// What was filled with last: that of a context, which goes on holding it.
CairoPattern patternOf(cairo_t* surface) {
  return CairoPattern(cairo_pattern_reference(cairo_get_source(surface)));
}

TEST(Gradients, OfAPairOfColoursIsMadeOnceAndThenStretched) {
  Gradients gradients;
  const PaintedPixels pixels(40, 40, 1, [&](cairo_t* surface) {
    gradients.fill(surface, {{0, 0}, {10, 40}}, black, red);
    const CairoPattern first = patternOf(surface);
    for (double height = 1; height <= 40; ++height) {
      gradients.fill(surface, {{10, 40 - height}, {10, height}}, black, red);
      ASSERT_EQ(patternOf(surface).get(), first.get()) << height;
    }
  });
}

TEST(Gradients, OfAnotherPairIsAnotherOne) {
  Gradients gradients;
  const PaintedPixels pixels(40, 40, 1, [&](cairo_t* surface) {
    gradients.fill(surface, {{0, 0}, {10, 40}}, black, red);
    const CairoPattern first = patternOf(surface);
    const std::pair<Rgba, Rgba> others[] = {{red, black}, {black, blue}, {black, {1, 0, 0, 0.5}}};
    for (const auto& [start, end] : others) {
      gradients.fill(surface, {{0, 0}, {10, 40}}, start, end);
      EXPECT_NE(patternOf(surface).get(), first.get());
    }
    gradients.fill(surface, {{0, 0}, {10, 40}}, black, red);
    EXPECT_EQ(patternOf(surface).get(), first.get());
  });
}

std::uint32_t redOf(std::uint32_t pixel) { return (pixel >> 16U) & 0xFFU; }

/// The pixels of a column rise from black at `top` to red above `bottom`.
void expectRise(const PaintedPixels& pixels, std::size_t x, std::size_t top, std::size_t bottom) {
  const double step = 255.0 / static_cast<double>(bottom - top);
  for (std::size_t y = top; y < bottom; ++y) {
    const double expected = (static_cast<double>(y - top) + 0.5) * step;
    EXPECT_NEAR(redOf(pixels.at(x, y)), expected, 2) << x << ", " << y;
  }
}

TEST(Gradients, BeginAndEndWithTheFrameWhereverThatIs) {
  Gradients gradients;
  for (const std::size_t scale : {1U, 2U}) {
    const PaintedPixels pixels(30, 40, static_cast<double>(scale), [&](cairo_t* surface) {
      gradients.fill(surface, {{0, 0}, {10, 40}}, black, red);
      gradients.fill(surface, {{10, 20}, {10, 5}}, black, red);
      gradients.fill(surface, {{20, 4}, {10, 30}}, black, red);
    });
    expectRise(pixels, 5 * scale, 0, 40 * scale);
    expectRise(pixels, 15 * scale, 20 * scale, 25 * scale);
    expectRise(pixels, 25 * scale, 4 * scale, 34 * scale);
    EXPECT_EQ(pixels.at(15 * scale, 20 * scale - 1), 0U);
    EXPECT_EQ(pixels.at(15 * scale, 25 * scale), 0U);
  }
}

TEST(Gradients, OfMorePairsThanAreKeptAreRight) {
  Gradients gradients;
  const PaintedPixels pixels(100, 4, 1, [&](cairo_t* surface) {
    for (int turn = 0; turn < 2; ++turn) {
      for (int pair = 0; pair < 100; ++pair) {
        const Rgba colour{pair / 255.0, 0, 0, 1};
        gradients.fill(surface, {{static_cast<double>(pair), 0}, {1, 4}}, colour, colour);
      }
    }
  });
  for (std::size_t pair = 0; pair < 100; ++pair) {
    EXPECT_EQ(redOf(pixels.at(pair, 2)), pair);
  }
}

std::vector<FillLinearGradient> gradientsOfCard(WidgetFamily family, ColourScheme scheme,
                                                const ColourPalette& colours) {
  const FakeStringTable strings;
  const MetricTextMeasurer measurer;
  const View view = NetworkAdapterWidgetEntryView{timestampEntry()}.body(
      {.strings = strings, .widgetFamily = family});
  const LaidOutView card = layOut(view, widgetSize(family), {measurer, "Today, 10:30"});
  std::vector<FillLinearGradient> gradients;
  for (const DrawCommand& command : makeDrawList(card, {colours, scheme, nullptr})) {
    const auto* const gradient = std::get_if<FillLinearGradient>(&command);
    if (gradient != nullptr) gradients.push_back(*gradient);
  }
  return gradients;
}

TEST(Gradients, OfAllCardsOfASchemeAreOneThatIsStretchedToEach) {
  const ColourPalette colours =
      readColours(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                  [](std::string_view line) { ADD_FAILURE() << line; });
  for (const ColourScheme scheme : {ColourScheme::light, ColourScheme::dark}) {
    const auto colour = [&](const char* name) {
      return resolveColour(Colour::named(name), colours, scheme).value();
    };
    for (const auto family : {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large}) {
      const FillLinearGradient whole{
          {{0, 0}, widgetSize(family)}, colour(gradientStartColour), colour(gradientEndColour)};
      EXPECT_THAT(gradientsOfCard(family, scheme, colours), testing::ElementsAre(whole));
    }
  }
}

}  // namespace
}  // namespace lanternfold
