#include "ViewTree/DrawList.h"

#include <optional>
#include <utility>

namespace lanternfold {
namespace {

/// What a view inherits from the views around it.
struct Inherited {
  Colour foreground = Colour::white();
  double opacity = 1;
};

class DrawListMaker {
 public:
  explicit DrawListMaker(const DrawContext& context) : context_(context) {}

  void add(const LaidOutView& view, Inherited inherited) {
    if (const auto* foreground = std::get_if<ForegroundNode>(&view.node)) {
      inherited.foreground = foreground->colour;
    } else if (const auto* opacity = std::get_if<OpacityNode>(&view.node)) {
      inherited.opacity *= context_.scheme == ColourScheme::light ? opacity->light : opacity->dark;
    }
    if (inherited.opacity <= 0) return;
    addOwn(view, inherited);
    for (const LaidOutView& child : view.children) add(child, inherited);
  }

  DrawList take() && { return std::move(list_); }

 private:
  void addOwn(const LaidOutView& view, const Inherited& inherited) {
    const Rect& frame = view.frame;
    if (frame.size.width <= 0 || frame.size.height <= 0) return;
    const auto foreground = [&] { return resolved(inherited.foreground, inherited.opacity); };
    if (!view.shownText.empty()) {
      list_.emplace_back(DrawText{frame, view.shownText, view.shownFont, foreground()});
    } else if (const auto* symbol = std::get_if<SymbolNode>(&view.node)) {
      list_.emplace_back(DrawSymbol{frame, symbol->name, foreground()});
    } else if (const auto* image = std::get_if<ImageNode>(&view.node)) {
      list_.emplace_back(DrawImage{frame, image->name, inherited.opacity});
    } else if (const auto* circle = std::get_if<CircleNode>(&view.node)) {
      list_.emplace_back(StrokeCircle{frame, circle->lineWidth, foreground()});
    } else if (const auto* rectangle = std::get_if<RoundedRectangleNode>(&view.node)) {
      list_.emplace_back(FillRoundedRectangle{frame, rectangle->cornerRadius,
                                              resolved(rectangle->fill, inherited.opacity)});
    } else if (const auto* gradient = std::get_if<LinearGradientNode>(&view.node)) {
      list_.emplace_back(FillLinearGradient{frame, resolved(gradient->start, inherited.opacity),
                                            resolved(gradient->end, inherited.opacity)});
    }
  }

  Rgba resolved(const Colour& colour, double opacity) const {
    std::optional<Rgba> value = resolveColour(colour, context_.palette, context_.scheme);
    if (!value) {
      if (context_.report) context_.report("no colour is named " + std::get<1>(colour.value));
      value = Rgba{0.5, 0.5, 0.5, colour.opacity};
    }
    value->alpha *= opacity;
    return *value;
  }

  const DrawContext& context_;
  DrawList list_;
};

}  // namespace

DrawList makeDrawList(const LaidOutView& view, const DrawContext& context) {
  DrawListMaker maker(context);
  maker.add(view, {});
  return std::move(maker).take();
}

}  // namespace lanternfold
