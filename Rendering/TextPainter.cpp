#include "Rendering/TextPainter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "Rendering/CairoColour.h"

namespace lanternfold {
namespace {

/// What the scratch image holds at least, in pixels.
constexpr Size usualRoom{800, 64};
/// And at most.
constexpr double widestImage = 32'000;
/// Above this size a letter's place to the pixel is good enough.
constexpr double largestPlacedPixels = 96;

/// The pixels of an image of one byte a pixel, as far as `size` reaches.
class CoveragePixels {
 public:
  CoveragePixels(cairo_surface_t* image, Size size)
      : image_(image),
        width_(static_cast<int>(size.width)),
        height_(static_cast<int>(size.height)),
        stride_(cairo_image_surface_get_stride(image)) {
    cairo_surface_flush(image);
    for (int row = 0; row < height_; ++row)
      std::ranges::fill(part(row, 0, width_), std::uint8_t{0});
  }
  ~CoveragePixels() { cairo_surface_mark_dirty(image_); }
  CoveragePixels(const CoveragePixels&) = delete;
  CoveragePixels& operator=(const CoveragePixels&) = delete;

  /// Covers also what `glyph` does that stands at (`x`, `y`).
  void add(const GlyphCoverage& glyph, int x, int y) {
    const int left = std::max(0, x + glyph.left);
    const int right = std::min(width_, x + glyph.left + glyph.width);
    const int top = std::max(0, y + glyph.top);
    const int bottom = std::min(height_, y + glyph.top + glyph.height);
    if (left >= right) return;
    for (int row = top; row < bottom; ++row) {
      const int start = (row - y - glyph.top) * glyph.width + left - x - glyph.left;
      const std::uint8_t* source = glyph.pixels.data() + start;
      for (std::uint8_t& each : part(row, left, right)) {
        each = static_cast<std::uint8_t>(std::min(255, each + *source++));
      }
    }
  }

 private:
  [[nodiscard]] std::span<std::uint8_t> part(int row, int left, int right) const {
    std::uint8_t* const start = cairo_image_surface_get_data(image_) + row * stride_;
    return {start + left, start + right};
  }

  cairo_surface_t* image_;
  int width_;
  int height_;
  int stride_;
};

enum class Parts { plain, coloured };

/// Calls `take` with those parts of `line`, and where each begins in the layout's size; until it
/// returns false, which is then the result.
bool forEachPart(const TextLine& line, Parts wanted,
                 const std::function<bool(PangoGlyphItem&, double)>& take) {
  double x = 0;
  for (const GSList* run = line.line()->runs; run != nullptr; run = run->next) {
    auto& part = *static_cast<PangoGlyphItem*>(run->data);
    const bool isWanted = line.hasColouredParts ? isColoured(part) == (wanted == Parts::coloured)
                                                : wanted == Parts::plain;
    if (isWanted && !take(part, x)) return false;
    x += static_cast<double>(pango_glyph_string_get_width(part.glyphs)) / PANGO_SCALE;
  }
  return true;
}

/// Shows those parts of `line` from the origin, in the size of its layout.
void showParts(cairo_t* surface, const TextLine& line, Parts wanted) {
  const char* const text = pango_layout_get_text(line.layout.get());
  forEachPart(line, wanted, [&](PangoGlyphItem& part, double x) {
    cairo_move_to(surface, x, 0);
    pango_cairo_show_glyph_item(surface, text, &part);
    return true;
  });
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

/// The letters of a line become pixels, each at its place to a quarter of one.
class LetterPlacing {
 public:
  /// `start` is where the line's baseline begins, and `scale` how many pixels a unit of its layout
  /// is.
  LetterPlacing(GlyphCoverages& glyphs, CoveragePixels& pixels, Point start, double scale)
      : glyphs_(glyphs), pixels_(pixels), start_(start), scale_(scale) {}

  /// False when there is a letter too large for it.
  bool add(const PangoGlyphItem& part, double x) {
    PangoFont* const font = part.item->analysis.font;
    int advance = 0;  // in pango's units, as all of a glyph's geometry
    for (const PangoGlyphInfo& each : std::span(part.glyphs->glyphs, glyphCount(part))) {
      const auto& [width, right, down] = each.geometry;
      if (each.glyph != PANGO_GLYPH_EMPTY) {
        const Point place{x + inUnits(advance + right), inUnits(down)};
        if (!add(font, each.glyph, place)) return false;
      }
      advance += width;
    }
    return true;
  }

 private:
  static std::size_t glyphCount(const PangoGlyphItem& part) {
    return static_cast<std::size_t>(part.glyphs->num_glyphs);
  }
  static double inUnits(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

  bool add(PangoFont* font, PangoGlyph glyph, Point place) {
    constexpr double places = GlyphCoverages::places;
    const double x = std::round((start_.x + place.x * scale_) * places);
    const double y = std::round(start_.y + place.y * scale_);
    const double pixel = std::floor(x / places);
    const GlyphCoverage* const coverage =
        glyphs_.glyph(font, glyph, scale_, static_cast<int>(x - pixel * places));
    if (coverage == nullptr) return false;
    pixels_.add(*coverage, static_cast<int>(pixel), static_cast<int>(y));
    return true;
  }

  GlyphCoverages& glyphs_;
  CoveragePixels& pixels_;
  Point start_;
  double scale_;
};

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
  const bool isPlaced = grid.hasPixels() && !line.hasBoxes &&
                        ink.size.height <= largestPlacedPixels && area.size.width <= widestImage &&
                        paintLetters(surface, grid, line, pixels, fontPixels, area);
  if (isPlaced && !line.hasColouredParts) return;
  cairo_save(surface);
  const Point start = grid.toPoints({pixels, {}}).origin;
  cairo_translate(surface, start.x, start.y);
  const double layoutScale = place.fontSize / TextLine::layoutFontSize;
  cairo_scale(surface, layoutScale, layoutScale);
  if (!isPlaced) showParts(surface, line, Parts::plain);
  showColouredParts(surface, line, place.colour.alpha);
  cairo_restore(surface);
}

bool TextPainter::paintLetters(cairo_t* surface, const DeviceGrid& grid, const TextLine& line,
                               Point baseline, double fontPixels, const Rect& area) {
  makeRoom(area.size);
  if (cairo_surface_status(coverage_.get()) != CAIRO_STATUS_SUCCESS) return false;
  {
    CoveragePixels pixels(coverage_.get(), area.size);
    LetterPlacing letters(glyphs_, pixels, {baseline.x - area.left(), baseline.y - area.top()},
                          fontPixels / TextLine::layoutFontSize);
    const bool arePlaced =
        forEachPart(line, Parts::plain,
                    [&](const PangoGlyphItem& part, double x) { return letters.add(part, x); });
    if (!arePlaced) return false;
  }
  cairo_save(surface);
  grid.usePixels(surface);
  cairo_rectangle(surface, area.left(), area.top(), area.size.width, area.size.height);
  cairo_clip(surface);
  cairo_mask_surface(surface, coverage_.get(), area.left(), area.top());
  cairo_restore(surface);
  return true;
}

void TextPainter::makeRoom(Size pixels) {
  const bool isEnough = coverage_ &&
                        cairo_image_surface_get_width(coverage_.get()) >= pixels.width &&
                        cairo_image_surface_get_height(coverage_.get()) >= pixels.height;
  if (isEnough) return;
  // The lines of a widget have room in it, so that it is made once or twice.
  coverage_.reset(cairo_image_surface_create(
      CAIRO_FORMAT_A8, static_cast<int>(std::max(pixels.width, usualRoom.width)),
      static_cast<int>(std::max(pixels.height, usualRoom.height))));
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
