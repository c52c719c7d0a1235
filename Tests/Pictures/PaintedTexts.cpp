#include "Tests/Pictures/PaintedTexts.h"

#include <array>
#include <cstring>

#include <cairo/cairo.h>
#include <pango/pangocairo.h>

#include "Rendering/RoundedClips.h"

namespace lanternfold {
namespace {

constexpr int width = 364;
constexpr int height = 200;
constexpr std::array texts = {"WAN  203.0.113.107", "Provider  Example Telecom", "Today, 10:30"};

void paintBackground(cairo_t* surface, const TextPainting& painting) {
  addRoundedRectangle(surface, {{0, 0}, {width, height}}, painting.cornerRadius);
  cairo_clip(surface);
  cairo_pattern_t* gradient = cairo_pattern_create_linear(0, 0, 0, height);
  cairo_pattern_add_color_stop_rgb(gradient, 0, painting.top.red, painting.top.green,
                                   painting.top.blue);
  cairo_pattern_add_color_stop_rgb(gradient, 1, painting.bottom.red, painting.bottom.green,
                                   painting.bottom.blue);
  cairo_set_source(surface, gradient);
  cairo_pattern_destroy(gradient);
  cairo_paint(surface);
}

void paintText(cairo_t* surface, const char* text, double size, bool asOutlines) {
  PangoLayout* layout = pango_cairo_create_layout(surface);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_context_set_round_glyph_positions(pango_layout_get_context(layout), FALSE);
  pango_cairo_context_set_font_options(pango_layout_get_context(layout), options);
  cairo_font_options_destroy(options);
  PangoFontDescription* font = pango_font_description_from_string("Inter");
  pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout, text, -1);
  if (asOutlines) {
    pango_cairo_layout_path(surface, layout);
    cairo_fill(surface);
  } else {
    pango_cairo_show_layout(surface, layout);
  }
  g_object_unref(layout);
}

Picture pictureOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  Picture picture{.width = width, .height = height, .pixels = {}};
  picture.pixels.resize(picture.width * picture.height);
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  for (std::size_t row = 0; row < picture.height; ++row) {
    std::memcpy(picture.pixels.data() + row * picture.width,
                cairo_image_surface_get_data(surface) + row * stride, picture.width * 4);
  }
  return picture;
}

}  // namespace

Picture painted(const TextPainting& painting) {
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* surface = cairo_create(image);
  paintBackground(surface, painting);
  cairo_set_source_rgb(surface, 1, 1, 1);
  const std::size_t count = texts.size() - (painting.withoutLastRow ? 1 : 0);
  for (std::size_t row = 0; row < count; ++row) {
    const auto number = static_cast<double>(row);
    cairo_move_to(surface, 20 + painting.right, 30 + number * 50 + painting.down);
    paintText(surface, texts.at(row), painting.size * (1 + 0.3 * number), painting.asOutlines);
  }
  cairo_destroy(surface);
  Picture picture = pictureOf(image);
  cairo_surface_destroy(image);
  return picture;
}

}  // namespace lanternfold
