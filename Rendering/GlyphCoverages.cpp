#include "Rendering/GlyphCoverages.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <span>
#include <utility>

#include <cairo.h>
#include <pango/pangocairo.h>

namespace lanternfold {
namespace {

constexpr int places = GlyphCoverages::places;

/// Adds them up by twos.
std::uint8_t meanOfFour(std::span<const std::uint8_t, places> four) {
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, four.data(), sizeof bytes);
  const std::uint32_t sums = (bytes & 0x00FF00FFU) + ((bytes >> 8U) & 0x00FF00FFU);
  return static_cast<std::uint8_t>(((sums & 0xFFFFU) + (sums >> 16U) + 2) / 4);
}

/// Each pixel of `coverage` becomes the mean of the `places` pixels of `wide` at its place, which
/// are then cleared.
void takeMeans(cairo_surface_t* wide, GlyphCoverage& coverage) {
  cairo_surface_flush(wide);
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(wide));
  const auto width = static_cast<std::size_t>(coverage.width);
  const auto height = static_cast<std::size_t>(coverage.height);
  coverage.pixels.resize(width * height);
  for (std::size_t row = 0; row < height; ++row) {
    const std::span<std::uint8_t> source(cairo_image_surface_get_data(wide) + row * stride,
                                         width * places);
    for (std::size_t column = 0; column < width; ++column) {
      coverage.pixels[row * width + column] =
          meanOfFour(source.subspan(column * places).first<places>());
    }
    std::ranges::fill(source, std::uint8_t{0});
  }
  cairo_surface_mark_dirty(wide);
}

/// The pixels of what cairo says a glyph covers; hinting moves edges by up to a pixel more.
GlyphCoverage roomFor(const cairo_text_extents_t& extents, double fontScale, double x) {
  if (!(extents.width > 0) || !(extents.height > 0)) return {};
  const double left = std::floor(x + extents.x_bearing * fontScale) - 1;
  const double top = std::floor(extents.y_bearing * fontScale) - 1;
  const double right = std::ceil(x + (extents.x_bearing + extents.width) * fontScale) + 1;
  const double bottom = std::ceil((extents.y_bearing + extents.height) * fontScale) + 1;
  return {static_cast<int>(left),
          static_cast<int>(top),
          static_cast<int>(right - left),
          static_cast<int>(bottom - top),
          {}};
}

}  // namespace

std::size_t GlyphCoverages::KeyHash::operator()(const Key& key) const {
  const std::size_t font = std::hash<const PangoFont*>()(key.font);
  const std::size_t scale = std::hash<double>()(key.fontScale);
  return (font ^ scale) * 31 + key.glyph * std::size_t{places} +
         static_cast<std::size_t>(key.place);
}

const GlyphCoverage* GlyphCoverages::glyph(PangoFont* font, std::uint32_t glyph, double fontScale,
                                           int place) {
  const Key key{font, glyph, place, fontScale};
  const Kept* kept = glyphs_.find(key);
  if (kept == nullptr) {
    FontHandle held(PANGO_FONT(g_object_ref(font)));
    kept = &glyphs_.keep(key, {std::move(held), draw(font, key)});
  }
  return kept->coverage ? &*kept->coverage : nullptr;
}

std::optional<GlyphCoverage> GlyphCoverages::draw(PangoFont* font, const Key& key) {
  cairo_scaled_font_t* const typeface = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font));
  if (typeface == nullptr) return std::nullopt;
  const cairo_glyph_t glyph{key.glyph, 0, 0};
  cairo_text_extents_t extents;
  cairo_scaled_font_glyph_extents(typeface, &glyph, 1, &extents);
  GlyphCoverage coverage = roomFor(extents, key.fontScale, static_cast<double>(key.place) / places);
  if (std::max(coverage.width, coverage.height) > largestSide) return std::nullopt;
  makeScratch();
  const cairo_matrix_t matrix{key.fontScale * places,
                              0,
                              0,
                              key.fontScale,
                              static_cast<double>(key.place - coverage.left * places),
                              static_cast<double>(-coverage.top)};
  cairo_set_matrix(scratch_.get(), &matrix);
  cairo_set_scaled_font(scratch_.get(), typeface);
  cairo_show_glyphs(scratch_.get(), &glyph, 1);
  if (cairo_status(scratch_.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
  takeMeans(wide_.get(), coverage);
  return coverage;
}

void GlyphCoverages::makeScratch() {
  if (scratch_ && cairo_status(scratch_.get()) == CAIRO_STATUS_SUCCESS) return;
  wide_.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, largestSide * places, largestSide));
  scratch_.reset(cairo_create(wide_.get()));
}

}  // namespace lanternfold
