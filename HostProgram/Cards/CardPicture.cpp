#include "HostProgram/Cards/CardPicture.h"

#include <utility>

#include "ViewTree/DrawingTimes.h"
#include "ViewTree/Layout.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

bool CardPicture::show(const View& view, const CardState& state) {
  if (view_ == view) return show(state);
  view_ = view;
  // Few cards do, and the words for it are dear: a megabyte of the languages' data.
  tellsTime_ = hasDrawingTime(view);
  draw(styleOf(state));
  return true;
}

bool CardPicture::show(const CardState& state) {
  Style style = styleOf(state);
  if (!view_ || style_ == style) return false;
  draw(std::move(style));
  return true;
}

CardPicture::Style CardPicture::styleOf(const CardState& state) const {
  return {.size = state.size,
          .scheme = drawing_.scheme,
          .drawingTime = tellsTime_ ? drawing_.timeText(state.time) : "",
          .pressedIntent = state.pressedIntent,
          .isContentInvalidated = state.isContentInvalidated,
          .corners = corners_};
}

/// The layout is as large as the view and not needed any more when it has been drawn.
void CardPicture::draw(Style style) {
  style_ = std::move(style);
  const LaidOutView layout = layOut(*view_, style_.size,
                                    {.measurer = drawing_.renderer.measurer(),
                                     .drawingTime = style_.drawingTime,
                                     .direction = drawing_.direction,
                                     .pressedIntent = style_.pressedIntent});
  faces_ = cardFaces(layout, style_.size);
  description_ = layout.accessibleDescription;
  commands_ = makeDrawList(layout, {.palette = drawing_.renderer.colours(),
                                    .scheme = style_.scheme,
                                    .report = drawing_.report,
                                    .isContentInvalidated = style_.isContentInvalidated});
  const double radius = style_.corners == CardCorners::painted ? widgetCornerRadius : 0;
  commands_.insert(commands_.begin(), BeginClip{{{0, 0}, style_.size}, radius});
  commands_.emplace_back(EndClip{});
  commands_.shrink_to_fit();
}

void CardPicture::paint(cairo_t* surface) const {
  drawing_.renderer.painter().paint(commands_, surface);
}

}  // namespace lanternfold
