#include "HostProgram/Cards/CardPicture.h"

#include <utility>

#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

bool CardPicture::show(const View& view, const CardState& state) {
  Style style{.size = state.size,
              .scheme = drawing_.scheme,
              .drawingTime = drawing_.timeText(state.time),
              .pressedIntent = state.pressedIntent,
              .isContentInvalidated = state.isContentInvalidated};
  if (view_ == view && style_ == style) return false;
  view_ = view;
  style_ = std::move(style);
  draw();
  return true;
}

void CardPicture::draw() {
  layout_ = layOut(*view_, style_.size,
                   {.measurer = drawing_.renderer.measurer(),
                    .drawingTime = style_.drawingTime,
                    .direction = drawing_.direction,
                    .pressedIntent = style_.pressedIntent});
  commands_ = makeDrawList(layout_, {.palette = drawing_.renderer.colours(),
                                     .scheme = style_.scheme,
                                     .report = drawing_.report,
                                     .isContentInvalidated = style_.isContentInvalidated});
  commands_.insert(commands_.begin(), BeginClip{{{0, 0}, style_.size}, widgetCornerRadius});
  commands_.emplace_back(EndClip{});
}

void CardPicture::paint(cairo_t* surface) const {
  drawing_.renderer.painter().paint(commands_, surface);
}

}  // namespace lanternfold
