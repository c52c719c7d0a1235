#include "Rendering/TextLines.h"

#include <fontconfig/fontconfig.h>
#include <hb-ot.h>
#include <string>
#include <utility>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "Rendering/BoundedCache.h"
#include "Rendering/IsolatedAddresses.h"
#include "Rendering/MissingGlyphs.h"
#include "Support/Utf8.h"
#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

/// The system font: the first of these that is installed, glyph by glyph.
constexpr const char* systemFontFamilies = "Inter, Cantarell, Noto Sans, DejaVu Sans, sans-serif";
/// Where capitals and digits end above the baseline, as a share of the font's size: the middle of
/// a tight line is the middle of its digits.
constexpr double capitalHeight = 0.73;
/// The lines of a few widgets, and what is tried when texts are shortened.
constexpr std::size_t linesKept = 256;

/// What stands in for a machine without typefaces, as shares of the font's size.
constexpr LineMetrics standInMetrics{.height = 1.21, .baseline = 0.97};
constexpr double standInAdvance = 0.55;

/// As a share of the font's size.
double ems(int pangoUnits) {
  return static_cast<double>(pangoUnits) / PANGO_SCALE / TextLine::layoutFontSize;
}

bool isShowable(const Font& font) { return font.size > 0 && font.size <= largestFontSize; }

/// As pango takes it: valid, without an end in its midst.
std::string shownText(std::string_view text) {
  const bool isValid = g_utf8_validate_len(text.data(), text.size(), nullptr) == TRUE;
  return isolatedAddresses(isValid ? text : displayableText(text));
}

bool machineHasTypefaces() {
  FcConfig* const configuration = FcConfigReference(nullptr);
  bool found = false;
  for (const FcSetName each : {FcSetSystem, FcSetApplication}) {
    const FcFontSet* const fonts = FcConfigGetFonts(configuration, each);
    found = found || (fonts != nullptr && fonts->nfont > 0);
  }
  FcConfigDestroy(configuration);
  return found;
}

/// Makes texts the same size at every scale of a picture: advances are not hinted, and glyphs stand
/// at fractions of a pixel. Upright hinting moves no letter sideways and keeps the feet sharp.
void makeScaleIndependent(PangoContext* context) {
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context, FALSE);
  pango_context_set_base_dir(context, PANGO_DIRECTION_LTR);
}

struct DescriptionRelease {
  void operator()(PangoFontDescription* description) const {
    pango_font_description_free(description);
  }
};
using FontDescription = std::unique_ptr<PangoFontDescription, DescriptionRelease>;

FontDescription systemFont(PangoWeight weight) {
  FontDescription font(pango_font_description_from_string(systemFontFamilies));
  pango_font_description_set_weight(font.get(), weight);
  pango_font_description_set_absolute_size(font.get(), TextLine::layoutFontSize * PANGO_SCALE);
  return font;
}

/// A text of a weight; as a view of the text it is looked up, and owning it, kept.
template <typename Text>
struct LineKey {
  Text text;
  FontWeight weight = FontWeight::regular;
};

struct LineHash {
  using is_transparent = void;
  std::size_t operator()(const auto& key) const {
    const std::size_t text = std::hash<std::string_view>()(key.text);
    return key.weight == FontWeight::bold ? ~text : text;
  }
};

struct LineEqual {
  using is_transparent = void;
  bool operator()(const auto& one, const auto& other) const {
    return one.weight == other.weight && one.text == other.text;
  }
};

}  // namespace

PangoLayoutLine* TextLine::line() const { return pango_layout_get_line_readonly(layout.get(), 0); }

bool isColoured(const PangoGlyphItem& part) {
  hb_face_t* const face = hb_font_get_face(pango_font_get_hb_font(part.item->analysis.font));
  return hb_ot_color_has_png(face) || hb_ot_color_has_layers(face) || hb_ot_color_has_svg(face);
}

struct TextLines::State {
  State(std::function<void(std::string_view)> report, const std::string& language)
      : missing(std::move(report)), hasTypefaces(machineHasTypefaces()) {
    if (!hasTypefaces) {
      missing.missEverything();
      return;
    }
    fontMap.reset(pango_cairo_font_map_new());
    context.reset(pango_font_map_create_context(fontMap.get()));
    makeScaleIndependent(context.get());
    if (!language.empty()) {
      pango_context_set_language(context.get(), pango_language_from_string(language.c_str()));
    }
    for (const FontWeight weight : {FontWeight::regular, FontWeight::bold}) {
      metricsOf(weight) = measuredMetrics(weight);
    }
  }

  [[nodiscard]] PangoFontDescription* description(FontWeight weight) const {
    return (weight == FontWeight::bold ? bold : regular).get();
  }

  [[nodiscard]] LineMetrics& metricsOf(FontWeight weight) {
    return weight == FontWeight::bold ? boldMetrics : regularMetrics;
  }

  /// As shares of the font's size, those of a line of its letters.
  [[nodiscard]] LineMetrics measuredMetrics(FontWeight weight) const {
    const PangoLayoutHandle letters = makeLayout("x", weight);
    int height = 0;
    pango_layout_get_size(letters.get(), nullptr, &height);
    return {ems(height), ems(pango_layout_get_baseline(letters.get()))};
  }

  [[nodiscard]] PangoLayoutHandle makeLayout(std::string_view text, FontWeight weight) const {
    PangoLayoutHandle layout(pango_layout_new(context.get()));
    pango_layout_set_font_description(layout.get(), description(weight));
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
  }

  [[nodiscard]] TextLine setLine(std::string_view text, FontWeight weight) {
    TextLine line;
    if (text.empty()) return line;
    if (!hasTypefaces) {
      line.width = static_cast<double>(characterCount(text)) * standInAdvance;
      return line;
    }
    line.layout = makeLayout(shownText(text), weight);
    PangoRectangle ink{};
    PangoRectangle logical{};
    pango_layout_line_get_extents(line.line(), &ink, &logical);
    line.width = ems(logical.width);
    line.ink = {{ems(ink.x), ems(ink.y)}, {ems(ink.width), ems(ink.height)}};
    line.hasBoxes = pango_layout_get_unknown_glyphs_count(line.layout.get()) > 0;
    if (line.hasBoxes) reportMissing(line.line());
    for (const GSList* run = line.line()->runs; run != nullptr; run = run->next) {
      const auto& part = *static_cast<const PangoGlyphItem*>(run->data);
      line.hasColouredParts = line.hasColouredParts || isColoured(part);
    }
    return line;
  }

  void reportMissing(PangoLayoutLine* line) {
    for (const GSList* run = line->runs; run != nullptr; run = run->next) {
      const PangoGlyphString* glyphs = static_cast<const PangoGlyphItem*>(run->data)->glyphs;
      for (int index = 0; index < glyphs->num_glyphs; ++index) {
        const PangoGlyph glyph = glyphs->glyphs[index].glyph;
        const bool isBox = glyph != PANGO_GLYPH_EMPTY && (glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
        if (isBox) missing.missCharacter(glyph & ~PANGO_GLYPH_UNKNOWN_FLAG);
      }
    }
  }

  MissingGlyphs missing;
  bool hasTypefaces;
  // A map of its own: what is installed later is seen by who begins later.
  std::unique_ptr<PangoFontMap, ObjectRelease> fontMap;
  std::unique_ptr<PangoContext, ObjectRelease> context;
  FontDescription regular = systemFont(PANGO_WEIGHT_NORMAL);
  FontDescription bold = systemFont(PANGO_WEIGHT_BOLD);
  LineMetrics regularMetrics = standInMetrics;
  LineMetrics boldMetrics = standInMetrics;
  BoundedCache<LineKey<std::string>, TextLine, LineHash, LineEqual> kept{linesKept};
};

TextLines::TextLines(std::function<void(std::string_view)> report, const std::string& language)
    : state_(std::make_unique<State>(std::move(report), language)) {}

TextLines::~TextLines() = default;

const TextLine& TextLines::line(std::string_view text, FontWeight weight) {
  const std::string_view bounded = cutBetweenCharacters(text, maximumLineBytes);
  const LineKey<std::string_view> key{bounded, weight};
  if (const TextLine* const known = state_->kept.find(key)) return *known;
  return state_->kept.keep({std::string(bounded), weight}, state_->setLine(bounded, weight));
}

double TextLines::width(std::string_view text, const Font& font) {
  return isShowable(font) ? line(text, font.weight).width * font.size : 0;
}

LineMetrics TextLines::metrics(const Font& font) const {
  if (!isShowable(font)) return {};
  if (font.leading == FontLeading::tight) {
    return {font.size, font.size * (1 + capitalHeight) / 2};
  }
  const LineMetrics& shares = state_->metricsOf(font.weight);
  return {shares.height * font.size, shares.baseline * font.size};
}

}  // namespace lanternfold
