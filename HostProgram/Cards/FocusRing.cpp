#include "HostProgram/Cards/FocusRing.h"

#include <algorithm>
#include <numbers>

namespace lanternfold {
namespace {

constexpr double brightWidth = 2;
constexpr double darkWidth = 4;

void traceRounded(const Cairo::RefPtr<Cairo::Context>& context, const Rect& frame, double radius) {
  constexpr double quarter = std::numbers::pi / 2;
  context->begin_new_sub_path();
  context->arc(frame.right() - radius, frame.top() + radius, radius, -quarter, 0);
  context->arc(frame.right() - radius, frame.bottom() - radius, radius, 0, quarter);
  context->arc(frame.left() + radius, frame.bottom() - radius, radius, quarter, 2 * quarter);
  context->arc(frame.left() + radius, frame.top() + radius, radius, 2 * quarter, 3 * quarter);
  context->close_path();
}

}  // namespace

void drawFocusRing(const Cairo::RefPtr<Cairo::Context>& context, const Rect& frame,
                   double cornerRadius) {
  constexpr double inset = darkWidth / 2;
  const Rect ring{
      {frame.left() + inset, frame.top() + inset},
      {std::max(frame.size.width - darkWidth, 1.0), std::max(frame.size.height - darkWidth, 1.0)}};
  const double largestRadius = std::min(ring.size.width, ring.size.height) / 2;
  traceRounded(context, ring, std::clamp(cornerRadius - inset, 0.0, largestRadius));
  context->set_source_rgba(0, 0, 0, 0.6);
  context->set_line_width(darkWidth);
  context->stroke_preserve();
  context->set_source_rgb(1, 1, 1);
  context->set_line_width(brightWidth);
  context->stroke();
}

}  // namespace lanternfold
