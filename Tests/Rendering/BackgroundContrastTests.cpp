// Whether what stands on the background can be read, wherever it stands: on the gradient and on
// the logo.
#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/BackgroundView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/PictureRenderer.h"
#include "Tests/Rendering/Picture.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

/// What the accessibility guidelines ask of small text.
constexpr double readable = 4.5;

Rgba opaqueColour(std::uint32_t pixel) {
  const auto component = [pixel](unsigned shift) { return ((pixel >> shift) & 0xFFU) / 255.0; };
  return {component(16), component(8), component(0), 1};
}

class BackgroundContrast
    : public testing::TestWithParam<std::tuple<WidgetFamily, ColourScheme, double>> {
 protected:
  [[nodiscard]] Rgba colour(const char* name) const {
    return resolveColour(Colour::named(name), renderer_.colours(), scheme()).value();
  }
  [[nodiscard]] static ColourScheme scheme() { return std::get<1>(GetParam()); }

  [[nodiscard]] Picture background() {
    const auto [family, scheme, scale] = GetParam();
    const FakeStringTable strings;
    const auto png =
        renderer_.picture(BackgroundView{}.body({.strings = strings, .widgetFamily = family}),
                          {.sizePoints = widgetSize(family), .scheme = scheme, .scale = scale});
    EXPECT_TRUE(png) << png.error();
    return decodedPng(png.value_or(""));
  }

 private:
  PictureRenderer renderer_{{std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                             [](std::string_view line) { ADD_FAILURE() << line; }}};
};

// Values over the logo once had a contrast of 3.3 in the light scheme.
TEST_P(BackgroundContrast, IsReadableAboveEveryPixel) {
  double ofValues = 21;
  double ofLabels = 21;
  for (const std::uint32_t pixel : background().pixels) {
    const Rgba below = opaqueColour(pixel);
    ofValues = std::min(ofValues, contrastRatio(colour(foregroundColour), below));
    const Rgba label = blended({1, 1, 1, 0.4}, below);
    ofLabels = std::min(ofLabels, contrastRatio(colour(labelColour), label));
  }
  EXPECT_GE(ofValues, readable);
  EXPECT_GE(ofLabels, readable);
}

// A logo that nobody can see would be no logo.
TEST_P(BackgroundContrast, StillShowsTheLogo) {
  const Picture picture = background();
  const auto height = static_cast<double>(picture.height);
  const auto row =
      static_cast<std::size_t>(height * 50 / widgetSize(std::get<0>(GetParam())).height);
  std::uint32_t leastGreen = 0xFF;
  std::uint32_t mostGreen = 0;
  for (std::size_t x = 0; x < picture.width; ++x) {
    const std::uint32_t green = (picture.at(x, row) >> 8U) & 0xFFU;
    leastGreen = std::min(leastGreen, green);
    mostGreen = std::max(mostGreen, green);
  }
  EXPECT_GE(mostGreen - leastGreen, 8U) << "of 255, between the logo and the gradient beside it";
}

INSTANTIATE_TEST_SUITE_P(Families, BackgroundContrast,
                         testing::Combine(testing::Values(WidgetFamily::small, WidgetFamily::medium,
                                                          WidgetFamily::large),
                                          testing::Values(ColourScheme::light, ColourScheme::dark),
                                          testing::Values(1.0, 2.0)));

}  // namespace
}  // namespace lanternfold
