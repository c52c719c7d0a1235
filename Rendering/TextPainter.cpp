#include "Rendering/TextPainter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
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
/// What the scratch image holds at least, in pixels.
constexpr Size usualRoom{800, 64};
/// Above this size a letter's place to the pixel is good enough.
constexpr double largestPlacedPixels = 96;

/// A row of an image of one byte a pixel.
std::span<std::uint8_t> rowOf(cairo_surface_t* image, std::size_t row) {
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image));
  return {cairo_image_surface_get_data(image) + row * stride,
          static_cast<std::size_t>(cairo_image_surface_get_width(image))};
}

/// Adds them up by twos: this is where most of the time of painting a text goes.
std::uint8_t meanOfFour(std::span<const std::uint8_t, places> four) {
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, four.data(), sizeof bytes);
  const std::uint32_t sums = (bytes & 0x00FF00FFU) + ((bytes >> 8U) & 0x00FF00FFU);
  return static_cast<std::uint8_t>(((sums & 0xFFFFU) + (sums >> 16U) + 2) / 4);
}

/// Each pixel of the first ones of `narrow` becomes the mean of the `places` pixels of `wide` at
/// its place, which are then cleared.
void takeMeans(cairo_surface_t* wide, cairo_surface_t* narrow, Size pixels) {
  cairo_surface_flush(wide);
  cairo_surface_flush(narrow);
  const auto width = static_cast<std::size_t>(pixels.width);
  for (std::size_t row = 0; row < static_cast<std::size_t>(pixels.height); ++row) {
    const std::span<std::uint8_t> source = rowOf(wide, row).first(width * places);
    const std::span<std::uint8_t> target = rowOf(narrow, row).first(width);
    for (std::size_t column = 0; column < width; ++column) {
      target[column] = meanOfFour(source.subspan(column * places).first<places>());
    }
    std::ranges::fill(source, std::uint8_t{0});
  }
  cairo_surface_mark_dirty(wide);
  cairo_surface_mark_dirty(narrow);
}

CairoSurface makeCoverage(double width, double height) {
  return CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_A8, static_cast<int>(width),
                                                 static_cast<int>(height)));
}

enum class Parts { plain, coloured };

/// Shows those parts of `line` from the origin, in the size of its layout.
void showParts(cairo_t* surface, const TextLine& line, Parts wanted) {
  const char* const text = pango_layout_get_text(line.layout.get());
  double x = 0;
  for (const GSList* run = line.line()->runs; run != nullptr; run = run->next) {
    auto& part = *static_cast<PangoGlyphItem*>(run->data);
    if (isColoured(part) == (wanted == Parts::coloured)) {
      cairo_move_to(surface, x, 0);
      pango_cairo_show_glyph_item(surface, text, &part);
    }
    x += static_cast<double>(pango_glyph_string_get_width(part.glyphs)) / PANGO_SCALE;
  }
}

void showPlainParts(cairo_t* surface, const TextLine& line) {
  if (line.hasColouredParts) {
    showParts(surface, line, Parts::plain);
  } else {
    cairo_move_to(surface, 0, 0);
    pango_cairo_show_layout_line(surface, line.line());
  }
}

void showColouredParts(cairo_t* surface, const TextLine& line, double opacity) {
  if (!line.hasColouredParts) return;
  // Their own colours know nothing of the text's opacity.
  if (opacity < 1) cairo_push_group(surface);
  showParts(surface, line, Parts::coloured);
  if (opacity >= 1) return;
  cairo_pop_group_to_source(surface);
  cairo_paint_with_alpha(surface, opacity);
}

/// What `line` covers, in pixels.
Rect inkPixels(const TextLine& line, Point baseline, double fontPixels) {
  return {{baseline.x + line.ink.left() * fontPixels, baseline.y + line.ink.top() * fontPixels},
          {line.ink.size.width * fontPixels, line.ink.size.height * fontPixels}};
}

}  // namespace

void TextPainter::paint(cairo_t* surface, const DeviceGrid& grid, const TextLine& line,
                        const LinePlace& place) {
  const double fontPixels = place.fontSize * grid.scale();
  Point pixels = grid.toPixels(place.baseline);
  if (grid.hasPixels()) pixels.y = std::round(pixels.y);
  const Rect ink = inkPixels(line, pixels, fontPixels);
  // Hinting moves edges by up to a pixel.
  const Rect around{{ink.left() - 2, ink.top() - 2}, {ink.size.width + 4, ink.size.height + 4}};
  const Rect area = intersection(roundedOut(around), grid.visiblePixels());
  if (area.size.width < 1 || area.size.height < 1) return;
  setColour(surface, place.colour);
  const bool isPlaced = grid.hasPixels() && ink.size.height <= largestPlacedPixels &&
                        area.size.width * places <= widestImage;
  if (isPlaced) paintCoverage(surface, grid, line, pixels, fontPixels, area);
  if (isPlaced && !line.hasColouredParts) return;
  cairo_save(surface);
  const Point start = grid.toPoints({pixels, {}}).origin;
  cairo_translate(surface, start.x, start.y);
  const double layoutScale = place.fontSize / TextLine::layoutFontSize;
  cairo_scale(surface, layoutScale, layoutScale);
  if (!isPlaced) showPlainParts(surface, line);
  showColouredParts(surface, line, place.colour.alpha);
  cairo_restore(surface);
}

void TextPainter::paintCoverage(cairo_t* surface, const DeviceGrid& grid, const TextLine& line,
                                Point baseline, double fontPixels, const Rect& area) {
  makeRoom(area.size);
  cairo_t* const wide = context_.get();
  const double layoutScale = fontPixels / TextLine::layoutFontSize;
  cairo_save(wide);
  cairo_rectangle(wide, 0, 0, area.size.width * places, area.size.height);
  cairo_clip(wide);
  const cairo_matrix_t matrix{
      layoutScale * places,   0, 0, layoutScale, (baseline.x - area.left()) * places,
      baseline.y - area.top()};
  cairo_set_matrix(wide, &matrix);
  showPlainParts(wide, line);
  cairo_restore(wide);
  if (cairo_status(wide) != CAIRO_STATUS_SUCCESS) return;
  takeMeans(wide_.get(), narrow_.get(), area.size);
  cairo_save(surface);
  grid.usePixels(surface);
  cairo_rectangle(surface, area.left(), area.top(), area.size.width, area.size.height);
  cairo_clip(surface);
  cairo_mask_surface(surface, narrow_.get(), area.left(), area.top());
  cairo_restore(surface);
}

void TextPainter::makeRoom(Size pixels) {
  const auto isEnough = [&] {
    return narrow_ && cairo_image_surface_get_width(narrow_.get()) >= pixels.width &&
           cairo_image_surface_get_height(narrow_.get()) >= pixels.height;
  };
  const bool works = context_ && cairo_status(context_.get()) == CAIRO_STATUS_SUCCESS;
  if (works && isEnough()) return;
  // The lines of a widget have room in it, so that it is made once or twice.
  const Size room{std::max(pixels.width, usualRoom.width),
                  std::max(pixels.height, usualRoom.height)};
  wide_ = makeCoverage(room.width * places, room.height);
  narrow_ = makeCoverage(room.width, room.height);
  context_.reset(cairo_create(wide_.get()));
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
