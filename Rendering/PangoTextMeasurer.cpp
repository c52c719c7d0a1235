#include "Rendering/PangoTextMeasurer.h"

#include <pango/pangocairo.h>

#include "Rendering/TextLines.h"

namespace lanternfold {

struct PangoTextMeasurer::State {
  std::unique_ptr<PangoContext, ObjectRelease> context{
      pango_font_map_create_context(pango_cairo_font_map_get_default())};
};

PangoTextMeasurer::PangoTextMeasurer() : state_(std::make_unique<State>()) {
  makeScaleIndependent(state_->context.get());
}

PangoTextMeasurer::~PangoTextMeasurer() = default;

Size PangoTextMeasurer::measure(std::string_view text, const Font& font) const {
  const PangoLayoutHandle line = makeTextLine(state_->context.get(), text, font);
  return lineSize(line.get(), font);
}

}  // namespace lanternfold
