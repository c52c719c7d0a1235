#include <limits>
#include <string>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>
#include <librsvg/rsvg.h>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "Rendering/PictureRenderer.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Rendering/PaintedPixels.h"
#include "Tests/Rendering/Picture.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

const std::filesystem::path assets = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets";

View cardOf(const NetworkAdapterEntry& entry) {
  const FakeStringTable strings;
  return NetworkAdapterWidgetEntryView{entry}.body({strings});
}

PictureRequest mediumRequest(ColourScheme scheme = ColourScheme::light, double scale = 1) {
  PictureRequest request;
  request.sizePoints = widgetSize(WidgetFamily::medium);
  request.cornerRadiusPoints = widgetCornerRadius;
  request.scheme = scheme;
  request.scale = scale;
  request.drawingTime = "Today, 10:30";
  return request;
}

std::string rendered(const View& view, const PictureRequest& request,
                     std::vector<std::string>* reports = nullptr,
                     const std::filesystem::path& folder = assets) {
  const auto report = [&](std::string_view line) {
    if (reports) reports->emplace_back(line);
  };
  const auto bytes = renderPicture(view, request, {folder, report});
  EXPECT_TRUE(bytes.has_value()) << (bytes ? "" : bytes.error());
  return bytes.value_or("");
}

std::string refusal(const PictureRequest& request) {
  const auto bytes = renderPicture(emptyView(), request, {assets, {}});
  return bytes ? "drawn" : bytes.error();
}

TEST(PictureRenderer, HasTheWidgetsSizeAtEveryScale) {
  for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
    const Picture picture =
        decodedPng(rendered(cardOf(placeholderEntry()), mediumRequest(ColourScheme::light, scale)));
    EXPECT_EQ(picture.width, static_cast<std::size_t>(364 * scale));
    EXPECT_EQ(picture.height, static_cast<std::size_t>(170 * scale));
  }
}

TEST(PictureRenderer, LeavesTheRoundedCornersTransparent) {
  const Picture picture = decodedPng(rendered(cardOf(placeholderEntry()), mediumRequest()));
  for (const std::size_t x : {0U, 3U, 360U, 363U}) {
    for (const std::size_t y : {0U, 3U, 166U, 169U}) EXPECT_EQ(picture.at(x, y), 0U);
  }
  EXPECT_EQ(picture.at(182, 1) >> 24U, 0xFFU);
  EXPECT_EQ(picture.at(1, 85) >> 24U, 0xFFU);
}

TEST(PictureRenderer, RunsTheGradientFromTopToBottomInEachScheme) {
  const auto nearly = [](std::uint32_t pixel, std::uint32_t colour) {
    for (const unsigned shift : {0U, 8U, 16U}) {
      const int difference =
          static_cast<int>((pixel >> shift) & 0xFFU) - static_cast<int>((colour >> shift) & 0xFFU);
      if (std::abs(difference) > 2) return false;
    }
    return true;
  };
  const Picture light = decodedPng(rendered(cardOf(entryOf({})), mediumRequest()));
  EXPECT_TRUE(nearly(light.at(100, 0), 0x1E66B6));
  EXPECT_TRUE(nearly(light.at(100, 169), 0x164C8C));
  const Picture dark = decodedPng(rendered(cardOf(entryOf({})), mediumRequest(ColourScheme::dark)));
  EXPECT_TRUE(nearly(dark.at(100, 0), 0x26364F));
  EXPECT_TRUE(nearly(dark.at(100, 169), 0x182236));
}

TEST(PictureRenderer, ShowsTheTimeOfDrawing) {
  PictureRequest later = mediumRequest();
  later.drawingTime = "Yesterday, 23:59";
  const auto differs = [&](const View& view) {
    return rendered(view, mediumRequest()) != rendered(view, later);
  };
  EXPECT_FALSE(differs(cardOf(placeholderEntry())));
  EXPECT_TRUE(differs(drawingTime("Last update %@", {8})));
  EXPECT_TRUE(differs(cardOf(timestampEntry())));
}

TEST(PictureRenderer, DrawsEveryAssetOfTheCard) {
  std::vector<std::string> reports;
  rendered(cardOf(placeholderEntry()), mediumRequest(), &reports);
  for (const char* name : {"globe", "wifi", "dot.radiowaves.left.and.right", "bolt.circle"}) {
    rendered(symbol(name), mediumRequest(), &reports);
  }
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST(PictureRenderer, DrawsAStandInForAMissingAssetAndSaysSoOnce) {
  std::vector<std::string> reports;
  const View twice = hstack(VerticalAlignment::centre, 4,
                            {symbol("nothing").frame(20, 20), symbol("nothing").frame(20, 20)});
  const Picture picture = decodedPng(rendered(twice, mediumRequest(), &reports));
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_THAT(reports.front(), testing::HasSubstr("nothing.svg: there is no such file"));
  EXPECT_NE(std::ranges::count_if(picture.pixels, [](auto pixel) { return pixel != 0; }), 0);
}

TEST(PictureRenderer, NeverLeavesTheAssetFolder) {
  std::vector<std::string> reports;
  rendered(symbol("../Assets/globe"), mediumRequest(), &reports);
  EXPECT_EQ(reports.size(), 1U);
}

TEST(PictureRenderer, DrawsWithoutAnyAsset) {
  std::vector<std::string> reports;
  rendered(cardOf(placeholderEntry()), mediumRequest(), &reports, "/nowhere");
  EXPECT_EQ(reports.size(), 4U);  // the colours, the logo and two symbols
}

TEST(PictureRenderer, ShowsTextAsItIsAndNeverAsMarkup) {
  const auto width = [](std::string_view content) {
    const Picture picture = decodedPng(rendered(text(content, {{13}}), mediumRequest()));
    return std::ranges::count_if(picture.pixels, [](auto pixel) { return pixel != 0; });
  };
  EXPECT_GT(width("<b>a</b>&amp;"), width("a&"));
  EXPECT_GT(width("<span"), 0);
}

TEST(PictureRenderer, SurvivesNamesOfAnyBytes) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  BasicInterface interface = sampleInterface(everyByte);
  interface.displayName =
      everyByte + "\u0627\u0644\u0634\u0628\u0643\u0629 \u7DB2\u7D61 \U0001F680";
  EXPECT_FALSE(rendered(cardOf(entryOf({interface})), mediumRequest()).empty());
}

TEST(PictureRenderer, WritesScalableFormats) {
  PictureRequest request = mediumRequest();
  request.format = PictureFormat::svg;
  const std::string svg = rendered(cardOf(placeholderEntry()), request);
  EXPECT_THAT(svg, testing::StartsWith("<?xml"));
  EXPECT_THAT(svg, testing::HasSubstr("width=\"364px\" height=\"170px\""));
  EXPECT_THAT(svg, testing::EndsWith("</svg>\n"));
  request.format = PictureFormat::pdf;
  const std::string pdf = rendered(cardOf(placeholderEntry()), request);
  EXPECT_THAT(pdf, testing::StartsWith("%PDF-"));
  EXPECT_THAT(pdf, testing::HasSubstr("%%EOF"));
}

/// An SVG as another program would show it.
PaintedPixels shownSvg(const std::string& svg, std::size_t width, std::size_t height) {
  const auto* const bytes = reinterpret_cast<const guint8*>(svg.data());
  const SvgHandle handle(rsvg_handle_new_from_data(bytes, svg.size(), nullptr));
  return PaintedPixels(width, height, 1, [&](cairo_t* surface) {
    const RsvgRectangle whole{0, 0, static_cast<double>(width), static_cast<double>(height)};
    EXPECT_EQ(rsvg_handle_render_document(handle.get(), surface, &whole, nullptr), TRUE);
  });
}

TEST(PictureRenderer, WritesAnSvgThatLooksTheSame) {
  const Picture png = decodedPng(rendered(cardOf(placeholderEntry()), mediumRequest()));
  PictureRequest request = mediumRequest();
  request.format = PictureFormat::svg;
  const PaintedPixels svg =
      shownSvg(rendered(cardOf(placeholderEntry()), request), png.width, png.height);
  double difference = 0;  // in greens, which have most of the brightness
  for (std::size_t y = 0; y < png.height; ++y) {
    for (std::size_t x = 0; x < png.width; ++x) {
      const auto green = [](std::uint32_t pixel) {
        return static_cast<double>((pixel >> 8U) & 0xFFU);
      };
      difference += std::abs(green(png.at(x, y)) - green(svg.at(x, y)));
    }
  }
  // A symbol or a text that is missing makes ten times as much.
  EXPECT_LT(difference / static_cast<double>(png.width * png.height), 2.5);
}

TEST(PictureRenderer, GivesAPdfItsTitle) {
  PictureRequest request = mediumRequest();
  request.format = PictureFormat::pdf;
  EXPECT_THAT(rendered(emptyView(), request), testing::Not(testing::HasSubstr("/Title")));
  request.title = "Network Adapter";
  EXPECT_THAT(rendered(emptyView(), request), testing::HasSubstr("/Title (Network Adapter)"));
}

TEST(PictureRenderer, MirrorsTheLayoutAndNotTheTexts) {
  PictureRequest request = mediumRequest();
  const View row = hstack(VerticalAlignment::centre, 0,
                          {text("192.168.0.1", {{13}}), emptyView().frame(200, 20)});
  const Picture leftToRight = decodedPng(rendered(row, request));
  request.direction = LayoutDirection::rightToLeft;
  const Picture rightToLeft = decodedPng(rendered(row, request));
  const auto firstInk = [](const Picture& picture) {
    std::size_t first = picture.width;
    for (std::size_t y = 0; y < picture.height; ++y) {
      for (std::size_t x = 0; x < first; ++x) {
        if (picture.at(x, y) >> 24U > 128) first = x;
      }
    }
    return first;
  };
  EXPECT_NEAR(static_cast<double>(firstInk(rightToLeft)),
              static_cast<double>(firstInk(leftToRight)) + 200, 1);
}

TEST(PictureRenderer, RefusesAbsurdSizes) {
  PictureRequest request = mediumRequest();
  for (const double scale : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    request.scale = scale;
    EXPECT_EQ(refusal(request), "the scale of a picture must be a number above 0");
  }
  for (const double scale : {46.0, 1e9}) {
    request.scale = scale;
    EXPECT_EQ(refusal(request), "the picture would be too large: choose a smaller scale");
  }
  request = mediumRequest();
  for (const Size size : {Size{0, 170}, Size{364, -1}, Size{std::nan(""), 170}}) {
    request.sizePoints = size;
    EXPECT_EQ(refusal(request), "the picture would be empty: its size must be above 0");
  }
}

TEST(PictureRenderer, DrawsTheSamePictureEveryTime) {
  for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf}) {
    PictureRequest request = mediumRequest();
    request.format = format;
    const std::string first = rendered(cardOf(longEntry()), request);
    EXPECT_TRUE(rendered(cardOf(longEntry()), request) == first);
    PictureRenderer renderer({assets, {}});
    for (int again = 0; again < 3; ++again) {
      EXPECT_TRUE(renderer.picture(cardOf(longEntry()), request) == first)
          << static_cast<int>(format) << " " << again;
    }
  }
}

}  // namespace
}  // namespace lanternfold
