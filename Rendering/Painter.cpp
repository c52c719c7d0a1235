#include "Rendering/Painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <variant>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "Rendering/TextLines.h"

namespace lanternfold {
namespace {

void setColour(cairo_t* surface, const Rgba& colour) {
  cairo_set_source_rgba(surface, colour.red, colour.green, colour.blue, colour.alpha);
}

/// `y` moved to the nearest row of the device, so that the feet of letters are sharp.
double onDeviceRow(cairo_t* surface, double y) {
  double x = 0;
  cairo_user_to_device(surface, &x, &y);
  y = std::round(y);
  cairo_device_to_user(surface, &x, &y);
  return y;
}

class CommandPainter {
 public:
  CommandPainter(cairo_t* surface, AssetFolder& assets)
      : surface_(surface), assets_(assets), texts_(pango_cairo_create_context(surface)) {
    makeScaleIndependent(texts_.get());
  }

  void operator()(const DrawText& command) {
    const PangoLayoutHandle line = makeTextLine(texts_.get(), command.text, command.font);
    const Rect& frame = command.frame;
    const double above = (frame.size.height - lineSize(line.get(), command.font).height) / 2;
    const double baseline = frame.top() + above + baselineOffset(line.get(), command.font);
    setColour(surface_, command.colour);
    cairo_move_to(surface_, frame.left(), onDeviceRow(surface_, baseline));
    pango_cairo_show_layout_line(surface_, pango_layout_get_line_readonly(line.get(), 0));
  }

  void operator()(const DrawSymbol& command) {
    assets_.drawSymbol(surface_, command.name, command.frame, command.colour);
  }

  void operator()(const DrawImage& command) {
    assets_.drawImage(surface_, command.name, command.frame, command.opacity);
  }

  void operator()(const StrokeCircle& command) {
    const Rect& frame = command.frame;
    const double radius = (std::min(frame.size.width, frame.size.height) - command.lineWidth) / 2;
    if (radius <= 0) return;
    setColour(surface_, command.colour);
    cairo_set_line_width(surface_, command.lineWidth);
    cairo_set_line_cap(surface_, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(surface_, CAIRO_LINE_JOIN_MITER);
    cairo_set_miter_limit(surface_, 10);
    cairo_new_sub_path(surface_);
    cairo_arc(surface_, (frame.left() + frame.right()) / 2, (frame.top() + frame.bottom()) / 2,
              radius, 0, 2 * std::numbers::pi);
    cairo_stroke(surface_);
  }

  void operator()(const FillRoundedRectangle& command) {
    setColour(surface_, command.colour);
    addRoundedRectangle(surface_, command.frame, command.cornerRadius);
    cairo_fill(surface_);
  }

  void operator()(const FillLinearGradient& command) {
    const Rect& frame = command.frame;
    cairo_pattern_t* gradient =
        cairo_pattern_create_linear(frame.left(), frame.top(), frame.left(), frame.bottom());
    const auto addStop = [&](double at, const Rgba& colour) {
      cairo_pattern_add_color_stop_rgba(gradient, at, colour.red, colour.green, colour.blue,
                                        colour.alpha);
    };
    addStop(0, command.start);
    addStop(1, command.end);
    cairo_set_source(surface_, gradient);
    cairo_pattern_destroy(gradient);
    cairo_rectangle(surface_, frame.left(), frame.top(), frame.size.width, frame.size.height);
    cairo_fill(surface_);
  }

  void operator()(const BeginClip& command) {
    cairo_save(surface_);
    cairo_new_path(surface_);
    addRoundedRectangle(surface_, command.frame, command.cornerRadius);
    cairo_clip(surface_);
  }

  void operator()(const EndClip&) { cairo_restore(surface_); }

 private:
  cairo_t* surface_;
  AssetFolder& assets_;
  std::unique_ptr<PangoContext, ObjectRelease> texts_;
};

}  // namespace

void paint(const DrawList& list, cairo_t* surface, AssetFolder& assets) {
  CommandPainter painter(surface, assets);
  for (const DrawCommand& command : list) std::visit(painter, command);
}

void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius) {
  const double radius = std::min({cornerRadius, frame.size.width / 2, frame.size.height / 2});
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(surface);
  cairo_arc(surface, frame.right() - radius, frame.top() + radius, radius, -quarter, 0);
  cairo_arc(surface, frame.right() - radius, frame.bottom() - radius, radius, 0, quarter);
  cairo_arc(surface, frame.left() + radius, frame.bottom() - radius, radius, quarter, 2 * quarter);
  cairo_arc(surface, frame.left() + radius, frame.top() + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(surface);
}

}  // namespace lanternfold
