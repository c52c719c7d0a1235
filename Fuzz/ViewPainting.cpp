// Paints any view that an archive may hold on a small picture: the first line of the input is the
// width, the height, the pixels a point, whether it is dark and whether it runs from right to left
// ("170 170 1.5 dr"), the rest the archive. Whatever the view is, the work ends soon, cairo goes on
// working, nothing is painted outside the widget, and what was kept gives the same picture again.
//
// There are no typefaces: stand-ins are painted for the letters, the same on every machine.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fontconfig/fontconfig.h>
#include <optional>
#include <string_view>
#include <vector>

#include <cairo.h>

#include "Fuzz/Support/ViewInput.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/ColourFile.h"
#include "Rendering/Painter.h"
#include "Rendering/PangoTextMeasurer.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"
#include "ViewTree/ViewArchive.h"

namespace {

constexpr double largestWidget = 400;  // points
constexpr double mostPixelsAPoint = 4;
constexpr int mostPixels = 400;  // in a row or a column of the widget
constexpr int margin = 8;        // pixels around the widget
constexpr double cornerRadius = 16;

struct Picture {
  lanternfold::Size size;
  double scale = 1;
  lanternfold::ColourScheme scheme = lanternfold::ColourScheme::light;
  lanternfold::LayoutDirection direction = lanternfold::LayoutDirection::leftToRight;

  [[nodiscard]] int pixelsOf(double length) const {
    return static_cast<int>(std::ceil(length * scale));
  }
};

void check(bool holds) {
  if (!holds) std::abort();
}

std::optional<Picture> pictureOf(std::string_view line) {
  const auto width = lanternfold::takeLength(line, largestWidget);
  const auto height = width ? lanternfold::takeLength(line, largestWidget) : std::nullopt;
  const auto scale = height ? lanternfold::takeLength(line, mostPixelsAPoint) : std::nullopt;
  if (!scale || *scale <= 0) return std::nullopt;
  Picture picture{{*width, *height}, *scale};
  if (picture.pixelsOf(std::max(*width, *height)) > mostPixels) return std::nullopt;
  if (line.contains('d')) picture.scheme = lanternfold::ColourScheme::dark;
  if (line.contains('r')) picture.direction = lanternfold::LayoutDirection::rightToLeft;
  return picture;
}

/// The widget's pixels, with a margin that nothing may touch.
class Canvas {
 public:
  explicit Canvas(const Picture& picture)
      : picture_(picture),
        surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                            picture.pixelsOf(picture.size.width) + 2 * margin,
                                            picture.pixelsOf(picture.size.height) + 2 * margin)) {}

  void paint(lanternfold::Painter& painter, const lanternfold::DrawList& list) {
    const lanternfold::CairoContext context(cairo_create(surface_.get()));
    cairo_translate(context.get(), margin, margin);
    cairo_scale(context.get(), picture_.scale, picture_.scale);
    painter.paint(list, context.get());
    check(cairo_status(context.get()) == CAIRO_STATUS_SUCCESS);
    cairo_surface_flush(surface_.get());
  }

  [[nodiscard]] std::vector<std::uint32_t> row(int y) const {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width()));
    const unsigned char* const bytes = cairo_image_surface_get_data(surface_.get()) +
                                       y * cairo_image_surface_get_stride(surface_.get());
    std::memcpy(pixels.data(), bytes, pixels.size() * sizeof(std::uint32_t));
    return pixels;
  }

  void checkMargin() const {
    for (int y = 0; y < height(); ++y) {
      const std::vector<std::uint32_t> pixels = row(y);
      const bool isBeside = y < margin || y >= height() - margin;
      const std::ptrdiff_t side = isBeside ? std::ssize(pixels) : margin;
      const auto isUntouched = [](std::uint32_t pixel) { return pixel == 0; };
      check(std::all_of(pixels.begin(), pixels.begin() + side, isUntouched));
      check(std::all_of(pixels.end() - side, pixels.end(), isUntouched));
    }
  }

  void checkSameAs(const Canvas& other) const {
    for (int y = 0; y < height(); ++y) check(row(y) == other.row(y));
  }

 private:
  [[nodiscard]] int width() const { return cairo_image_surface_get_width(surface_.get()); }
  [[nodiscard]] int height() const { return cairo_image_surface_get_height(surface_.get()); }

  Picture picture_;
  lanternfold::CairoSurface surface_;
};

/// As whoever draws lists it.
lanternfold::DrawList listOf(const lanternfold::View& view, const Picture& picture,
                             lanternfold::Painter& painter) {
  static const lanternfold::ColourPalette palette = lanternfold::standInColours();
  const lanternfold::PangoTextMeasurer measurer(painter.texts());
  const lanternfold::LaidOutView laidOut =
      lanternfold::layOut(view, picture.size, {measurer, "10:30", picture.direction});
  lanternfold::DrawList list =
      lanternfold::makeDrawList(laidOut, {palette, picture.scheme, nullptr});
  list.insert(list.begin(), lanternfold::BeginClip{{{0, 0}, picture.size}, cornerRadius});
  list.emplace_back(lanternfold::EndClip{});
  return list;
}

void forgetTypefaces() {
  static const bool areForgotten = FcConfigSetCurrent(FcConfigCreate()) == FcTrue;
  check(areForgotten);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [line, archive] = lanternfold::viewInput(data, size);
  const std::optional<Picture> picture = pictureOf(line);
  if (!picture) return 0;
  const auto view = lanternfold::viewOfArchive(archive);
  if (!view) return 0;
  forgetTypefaces();
  lanternfold::Painter painter(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets", {});
  const lanternfold::DrawList list = listOf(*view, *picture, painter);
  Canvas first(*picture);
  first.paint(painter, list);
  first.checkMargin();
  Canvas again(*picture);
  again.paint(painter, list);
  again.checkSameAs(first);
  return 0;
}
