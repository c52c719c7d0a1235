#include "Rendering/Painter.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>
#include <vector>

#include <cairo.h>

#include "Rendering/CairoColour.h"
#include "Rendering/DeviceGrid.h"
#include "Rendering/PaintLimits.h"
#include "Rendering/RoundedClips.h"
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
        clips_(painter.corners_),
        budget_(areaOf(grids_.back().visiblePixels().size)) {}

  /// Whether what is painted so far leaves room for more.
  [[nodiscard]] bool isWithinBudget() const { return isWithinBudget_; }

  void operator()(const DrawText& command) {
    const Font& font = command.font;
    const Rect& frame = command.frame;
    const LineMetrics metrics = painter_.texts_.metrics(font);
    if (metrics.height <= 0 || !takesPlaceWhole(frame)) return;
    const TextLine& line = painter_.texts_.line(command.text, font.weight);
    const double above = (frame.size.height - metrics.height) / 2;
    const Point baseline{frame.left(), frame.top() + above + metrics.baseline};
    // Letters reach a little out of their frame.
    const Rect around{{frame.left() - font.size, frame.top() - font.size},
                      {std::max(frame.size.width, line.width * font.size) + 2 * font.size,
                       frame.size.height + 2 * font.size}};
    if (!keepCorners(around)) return;
    if (line.layout) {
      painter_.textPainter_.paint(surface_, grid(), line, {baseline, font.size, command.colour});
    } else {
      paintLineStandIn(surface_, line.width * font.size, font.size, baseline, command.colour);
    }
  }

  void operator()(const DrawSymbol& command) { paintAsset(command); }
  void operator()(const DrawImage& command) { paintAsset(command); }

  void operator()(const StrokeCircle& command) {
    if (!takesPlaceWhole(command.frame) || !keepCorners(grid().aligned(command.frame))) return;
    painter_.circles_.paint(surface_, grid(), command);
  }

  void operator()(const FillRoundedRectangle& command) {
    if (!takesPlace(command.frame)) return;
    const Rect frame = reachable(command.frame);
    if (!keepCorners(frame)) return;
    setColour(surface_, command.colour);
    addRoundedRectangle(surface_, frame, command.cornerRadius);
    cairo_fill(surface_);
  }

  void operator()(const FillLinearGradient& command) {
    if (!takesPlace(command.frame)) return;
    const Rect frame = reachable(command.frame);
    if (keepCorners(frame)) {
      painter_.gradients_.fill(surface_, frame, command.start, command.end);
    }
  }

  void operator()(const BeginClip& command) {
    if (clipsLeftOut_ > 0 || grids_.size() > maximumClips || !isDrawable(command.frame)) {
      ++clipsLeftOut_;
      return;
    }
    cairo_save(surface_);
    const Rect frame = reachable(command.frame);
    RoundedClip clip =
        makeRoundedClip(grid().alignedPixels(frame), command.cornerRadius * grid().scale());
    const bool keepsCorners =
        grid().hasPixels() && clip.cornerRadius <= CornerShapes::largestRadius;
    if (!keepsCorners) clip.cornerRadius = 0;
    addRoundedRectangle(surface_, frame, keepsCorners ? 0 : command.cornerRadius);
    cairo_clip(surface_);
    clips_.begin(clip);
    grids_.emplace_back(surface_);
  }

  void operator()(const EndClip&) {
    if (clipsLeftOut_ > 0) {
      --clipsLeftOut_;
    } else if (grids_.size() > 1) {
      clips_.end(surface_, grid());
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

  template <typename Command>
  void paintAsset(const Command& command) {
    if (!takesPlaceWhole(command.frame) || !keepCorners(grid().aligned(command.frame))) return;
    painter_.assets_.paint(surface_, grid(), command);
  }

  /// Before what covers no more than `area` is painted; whether it may be.
  [[nodiscard]] bool keepCorners(const Rect& area) {
    isWithinBudget_ = budget_.spend(clips_.keepCorners(surface_, grid(), grid().toPixels(area)));
    return isWithinBudget_;
  }

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
  RoundedClips clips_;
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

}  // namespace lanternfold
