#include "Rendering/TextLines.h"

#include <cmath>
#include <memory>

#include <cairo.h>
#include <pango/pangocairo.h>

namespace lanternfold {
namespace {

/// The system font: the first of these that is installed, glyph by glyph.
constexpr const char* systemFontFamilies = "Inter, Cantarell, Noto Sans, DejaVu Sans, sans-serif";
/// Where capitals and digits end above the baseline, as a share of the font's size: the middle of
/// a tight line is the middle of its digits.
constexpr double capitalHeight = 0.73;

struct DescriptionRelease {
  void operator()(PangoFontDescription* description) const {
    pango_font_description_free(description);
  }
};

double points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

}  // namespace

PangoLayoutHandle makeTextLine(PangoContext* context, std::string_view text, const Font& font) {
  PangoLayoutHandle line(pango_layout_new(context));
  const std::unique_ptr<PangoFontDescription, DescriptionRelease> description(
      pango_font_description_from_string(systemFontFamilies));
  pango_font_description_set_absolute_size(description.get(), font.size * PANGO_SCALE);
  pango_font_description_set_weight(
      description.get(), font.weight == FontWeight::bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_layout_set_font_description(line.get(), description.get());
  pango_layout_set_single_paragraph_mode(line.get(), TRUE);
  pango_layout_set_text(line.get(), text.data(), static_cast<int>(text.size()));
  return line;
}

Size lineSize(PangoLayout* line, const Font& font) {
  int width = 0;
  int height = 0;
  pango_layout_get_size(line, &width, &height);
  return {points(width), font.leading == FontLeading::tight ? font.size : points(height)};
}

double baselineOffset(PangoLayout* line, const Font& font) {
  if (font.leading == FontLeading::tight) return font.size * (1 + capitalHeight) / 2;
  return points(pango_layout_get_baseline(line));
}

void makeScaleIndependent(PangoContext* context) {
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context, FALSE);
}

}  // namespace lanternfold
