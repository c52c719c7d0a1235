#include "Rendering/TextPainter.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "Rendering/CairoColour.h"

namespace lanternfold {
namespace {

/// Places for a letter in a pixel's width. The image surface itself knows only whole pixels.
constexpr int places = 4;
/// What cairo's images may be wide.
constexpr double widestImage = 32'000;
/// Above this size a letter's place to the pixel is good enough.
constexpr double largestPlacedPixels = 96;

/// The rows of an image of one byte a pixel.
struct Coverage {
  explicit Coverage(cairo_surface_t* image)
      : bytes(cairo_image_surface_get_data(image)),
        stride(static_cast<std::size_t>(cairo_image_surface_get_stride(image))),
        width(static_cast<std::size_t>(cairo_image_surface_get_width(image))),
        height(static_cast<std::size_t>(cairo_image_surface_get_height(image))) {}

  [[nodiscard]] std::span<std::uint8_t> row(std::size_t index) const {
    return {bytes + index * stride, width};
  }

  std::uint8_t* bytes;
  std::size_t stride;
  std::size_t width;
  std::size_t height;
};

/// Each pixel of `narrow` becomes the mean of the `places` pixels of `wide` at its place.
void takeMeans(cairo_surface_t* wide, cairo_surface_t* narrow) {
  cairo_surface_flush(wide);
  cairo_surface_flush(narrow);
  const Coverage from(wide);
  const Coverage into(narrow);
  for (std::size_t row = 0; row < into.height; ++row) {
    const std::span<const std::uint8_t> source = from.row(row);
    const std::span<std::uint8_t> target = into.row(row);
    for (std::size_t column = 0; column < into.width; ++column) {
      unsigned sum = places / 2;
      for (const std::uint8_t each : source.subspan(column * places, places)) sum += each;
      target[column] = static_cast<std::uint8_t>(sum / places);
    }
  }
  cairo_surface_mark_dirty(narrow);
}

CairoSurface makeCoverage(double width, double height) {
  return CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, static_cast<int>(width),
                                                 static_cast<int>(height)));
}

enum class Parts { plain, coloured };

/// Shows those parts of `line` from `baseline`.
void showParts(cairo_t* surface, const TextLine& line, Point baseline, Parts wanted) {
  const char* const text = pango_layout_get_text(line.layout.get());
  double x = baseline.x;
  for (const GSList* run = line.line()->runs; run != nullptr; run = run->next) {
    auto& part = *static_cast<PangoGlyphItem*>(run->data);
    if (isColoured(part) == (wanted == Parts::coloured)) {
      cairo_move_to(surface, x, baseline.y);
      pango_cairo_show_glyph_item(surface, text, &part);
    }
    x += static_cast<double>(pango_glyph_string_get_width(part.glyphs)) / PANGO_SCALE;
  }
}

void showPlainParts(cairo_t* surface, const TextLine& line, Point baseline) {
  if (line.hasColouredParts) {
    showParts(surface, line, baseline, Parts::plain);
  } else {
    cairo_move_to(surface, baseline.x, baseline.y);
    pango_cairo_show_layout_line(surface, line.line());
  }
}

void showColouredParts(cairo_t* surface, const TextLine& line, Point baseline, double opacity) {
  if (!line.hasColouredParts) return;
  // Their own colours know nothing of the text's opacity.
  if (opacity < 1) cairo_push_group(surface);
  showParts(surface, line, baseline, Parts::coloured);
  if (opacity >= 1) return;
  cairo_pop_group_to_source(surface);
  cairo_paint_with_alpha(surface, opacity);
}

/// The plain parts of `line` within `area`, as coverage: each letter placed in pixels that are a
/// fourth as wide.
CairoSurface coverageOf(const TextLine& line, Point baselinePixels, double scale,
                        const Rect& area) {
  const CairoSurface wide = makeCoverage(area.size.width * places, area.size.height);
  const CairoContext context(cairo_create(wide.get()));
  cairo_scale(context.get(), places, 1);
  cairo_translate(context.get(), baselinePixels.x - area.left(), baselinePixels.y - area.top());
  cairo_scale(context.get(), scale, scale);
  showPlainParts(context.get(), line, {});
  CairoSurface coverage = makeCoverage(area.size.width, area.size.height);
  if (cairo_surface_status(wide.get()) == CAIRO_STATUS_SUCCESS &&
      cairo_surface_status(coverage.get()) == CAIRO_STATUS_SUCCESS) {
    takeMeans(wide.get(), coverage.get());
  }
  return coverage;
}

/// What `line` covers, in pixels.
Rect inkPixels(const TextLine& line, Point baselinePixels, double scale) {
  return {{baselinePixels.x + line.ink.left() * scale, baselinePixels.y + line.ink.top() * scale},
          {line.ink.size.width * scale, line.ink.size.height * scale}};
}

}  // namespace

void paintLine(cairo_t* surface, const DeviceGrid& grid, const TextLine& line, Point baseline,
               const Rgba& colour) {
  Point pixels = grid.toPixels(baseline);
  if (grid.hasPixels()) pixels.y = std::round(pixels.y);
  const Rect ink = inkPixels(line, pixels, grid.scale());
  // Hinting moves edges by up to a pixel.
  const Rect around{{ink.left() - 2, ink.top() - 2}, {ink.size.width + 4, ink.size.height + 4}};
  const Rect area = intersection(roundedOut(around), grid.visiblePixels());
  if (area.size.width < 1 || area.size.height < 1) return;
  const Point start = grid.toPoints({pixels, {}}).origin;
  setColour(surface, colour);
  if (!grid.hasPixels() || ink.size.height > largestPlacedPixels ||
      area.size.width * places > widestImage) {
    showPlainParts(surface, line, start);
  } else {
    const CairoSurface coverage = coverageOf(line, pixels, grid.scale(), area);
    cairo_save(surface);
    grid.usePixels(surface);
    cairo_mask_surface(surface, coverage.get(), area.left(), area.top());
    cairo_restore(surface);
  }
  showColouredParts(surface, line, start, colour.alpha);
}

void paintLineStandIn(cairo_t* surface, double width, double fontSize, Point baseline,
                      const Rgba& colour) {
  constexpr double thickness = 0.5;  // of the font's size
  setColour(surface, {colour.red, colour.green, colour.blue, colour.alpha / 2});
  cairo_rectangle(surface, baseline.x, baseline.y - thickness * fontSize, width,
                  thickness * fontSize);
  cairo_fill(surface);
}

}  // namespace lanternfold
