#include "Rendering/Painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <variant>
#include <vector>

#include <cairo.h>

#include "Rendering/CairoColour.h"
#include "Rendering/DeviceGrid.h"
#include "Rendering/PaintLimits.h"
#include "Rendering/TextPainter.h"

namespace lanternfold {
namespace {

double areaOf(const Size& size) { return size.width * size.height; }

}  // namespace

/// Paints one list. The grids are those of the clips around a command, the innermost one last.
class CommandPainter {
 public:
  CommandPainter(Painter& painter, cairo_t* surface)
      : painter_(painter),
        surface_(surface),
        grids_{DeviceGrid(surface)},
        budget_(areaOf(grids_.back().visiblePixels().size)) {}

  /// Whether what is painted so far leaves room for more.
  [[nodiscard]] bool isWithinBudget() const { return isWithinBudget_; }

  void operator()(const DrawText& command) {
    const Font& font = command.font;
    if (!takesPlaceWhole(command.frame)) return;
    const TextLine& line = painter_.texts_.line(command.text, font);
    const LineMetrics metrics = painter_.texts_.metrics(font);
    const double above = (command.frame.size.height - metrics.height) / 2;
    const Point baseline{command.frame.left(), command.frame.top() + above + metrics.baseline};
    if (line.layout) {
      paintLine(surface_, grid(), line, baseline, command.colour);
    } else {
      paintLineStandIn(surface_, line.width, font.size, baseline, command.colour);
    }
  }

  void operator()(const DrawSymbol& command) {
    if (takesPlaceWhole(command.frame)) painter_.assets_.paint(surface_, grid(), command);
  }

  void operator()(const DrawImage& command) {
    if (takesPlaceWhole(command.frame)) painter_.assets_.paint(surface_, grid(), command);
  }

  void operator()(const StrokeCircle& command) {
    if (!takesPlaceWhole(command.frame)) return;
    const Rect frame = grid().aligned(command.frame);
    const double radius = (std::min(frame.size.width, frame.size.height) - command.lineWidth) / 2;
    if (!(radius > 0) || !(command.lineWidth > 0)) return;
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
    if (!takesPlace(command.frame)) return;
    setColour(surface_, command.colour);
    addRoundedRectangle(surface_, reachable(command.frame), command.cornerRadius);
    cairo_fill(surface_);
  }

  void operator()(const FillLinearGradient& command) {
    if (!takesPlace(command.frame)) return;
    painter_.gradients_.fill(surface_, reachable(command.frame), command.start, command.end);
  }

  void operator()(const BeginClip& command) {
    if (clipsLeftOut_ > 0 || grids_.size() > maximumClips || !isDrawable(command.frame)) {
      ++clipsLeftOut_;
      return;
    }
    cairo_save(surface_);
    addRoundedRectangle(surface_, reachable(command.frame), command.cornerRadius);
    cairo_clip(surface_);
    grids_.emplace_back(surface_);
  }

  void operator()(const EndClip&) {
    if (clipsLeftOut_ > 0) {
      --clipsLeftOut_;
    } else if (grids_.size() > 1) {
      cairo_restore(surface_);
      grids_.pop_back();
    }
  }

  /// Ends the clips that have not ended.
  void finish() {
    clipsLeftOut_ = 0;
    while (grids_.size() > 1) (*this)(EndClip{});
  }

 private:
  [[nodiscard]] const DeviceGrid& grid() const { return grids_.back(); }

  /// Whether something of `frame` can be seen and may still be painted.
  [[nodiscard]] bool takesPlace(const Rect& frame) {
    if (clipsLeftOut_ > 0 || !isDrawable(frame)) return false;
    const Rect seen = intersection(grid().toPixels(frame), grid().visiblePixels());
    const double area = areaOf(seen.size);
    isWithinBudget_ = isWithinBudget_ && budget_.spend(area);
    return isWithinBudget_ && area > 0;
  }

  /// The same, for what cannot be drawn in part.
  [[nodiscard]] bool takesPlaceWhole(const Rect& frame) {
    return isNearOrigin(frame, farthestPixel / grid().scale()) && takesPlace(frame);
  }

  /// `frame` within what can be drawn, and between pixels.
  [[nodiscard]] Rect reachable(const Rect& frame) const {
    return grid().aligned(nearOrigin(frame, farthestPixel / grid().scale()));
  }

  Painter& painter_;
  cairo_t* surface_;
  std::vector<DeviceGrid> grids_;
  std::size_t clipsLeftOut_ = 0;
  PaintBudget budget_;
  bool isWithinBudget_ = true;
};

Painter::Painter(std::filesystem::path assets, std::function<void(std::string_view)> report,
                 const std::string& language)
    : report_(report), texts_(report, language), assets_(std::move(assets), std::move(report)) {}

void Painter::paint(const DrawList& list, cairo_t* surface) {
  cairo_save(surface);
  CommandPainter painter(*this, surface);
  for (const DrawCommand& command : list) {
    std::visit(painter, command);
    if (painter.isWithinBudget()) continue;
    if (report_) report_("the picture covers itself too often: the rest of it is left out");
    break;
  }
  painter.finish();
  cairo_restore(surface);
}

void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius) {
  const double radius =
      std::clamp(cornerRadius, 0.0, std::min(frame.size.width, frame.size.height) / 2);
  if (!(radius > 0)) {
    cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
    return;
  }
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(surface);
  cairo_arc(surface, frame.right() - radius, frame.top() + radius, radius, -quarter, 0);
  cairo_arc(surface, frame.right() - radius, frame.bottom() - radius, radius, 0, quarter);
  cairo_arc(surface, frame.left() + radius, frame.bottom() - radius, radius, quarter, 2 * quarter);
  cairo_arc(surface, frame.left() + radius, frame.top() + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(surface);
}

}  // namespace lanternfold
