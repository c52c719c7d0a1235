#include "ViewTree/DrawList.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace lanternfold {
namespace {

constexpr double opacityOfInvalidatedContent = 0.5;

/// What a view inherits from the views around it.
struct Inherited {
  Colour foreground = Colour::white();
  double opacity = 1;
  ColourScheme scheme = ColourScheme::light;
};

class DrawListMaker {
 public:
  explicit DrawListMaker(const DrawContext& context) : context_(context) {}

  void add(const LaidOutView& view, Inherited inherited) {
    if (const auto* foreground = std::get_if<ForegroundNode>(&view.node)) {
      inherited.foreground = foreground->colour;
    } else if (const auto* opacity = std::get_if<OpacityNode>(&view.node)) {
      inherited.opacity *= inherited.scheme == ColourScheme::light ? opacity->light : opacity->dark;
    } else if (std::holds_alternative<InvalidatableContentNode>(view.node)) {
      if (context_.isContentInvalidated) inherited.opacity *= opacityOfInvalidatedContent;
    } else if (const auto* scheme = std::get_if<ColourSchemeNode>(&view.node)) {
      inherited.scheme = scheme->scheme;
    }
    if (inherited.opacity <= 0) return;
    if (const auto* clip = std::get_if<ClipNode>(&view.node)) {
      addClipped(view, *clip, inherited);
      return;
    }
    addOwn(view, inherited);
    addChildren(view, inherited);
  }

  DrawList take() && { return std::move(list_); }

 private:
  void addChildren(const LaidOutView& view, const Inherited& inherited) {
    for (const LaidOutView& child : view.children) add(child, inherited);
  }

  void addClipped(const LaidOutView& view, const ClipNode& clip, const Inherited& inherited) {
    if (view.frame.size.width <= 0 || view.frame.size.height <= 0) return;
    const std::size_t before = list_.size();
    list_.emplace_back(BeginClip{view.frame, clip.cornerRadius});
    addChildren(view, inherited);
    if (list_.size() == before + 1) {
      list_.pop_back();
    } else {
      list_.emplace_back(EndClip{});
    }
  }

  void addText(const LaidOutView& view, const Rgba& colour) {
    for (const ShownLine& line : view.shownLines) {
      if (line.text.empty() || line.frame.size.width <= 0) continue;
      list_.emplace_back(DrawText{line.frame, line.text, view.shownFont, colour});
    }
  }

  void addOwn(const LaidOutView& view, const Inherited& inherited) {
    const Rect& frame = view.frame;
    if (frame.size.width <= 0 || frame.size.height <= 0) return;
    const auto foreground = [&] { return resolved(inherited.foreground, inherited); };
    if (!view.shownText.empty()) {
      addText(view, foreground());
    } else if (const auto* symbol = std::get_if<SymbolNode>(&view.node)) {
      list_.emplace_back(DrawSymbol{frame, symbol->name, foreground(), symbol->strength});
    } else if (const auto* image = std::get_if<ImageNode>(&view.node)) {
      list_.emplace_back(DrawImage{frame, image->name, inherited.opacity});
    } else if (const auto* circle = std::get_if<CircleNode>(&view.node)) {
      list_.emplace_back(StrokeCircle{frame, circle->lineWidth, foreground()});
    } else if (const auto* rectangle = std::get_if<RoundedRectangleNode>(&view.node)) {
      list_.emplace_back(FillRoundedRectangle{frame, rectangle->cornerRadius,
                                              resolved(rectangle->fill, inherited)});
    } else if (const auto* gradient = std::get_if<LinearGradientNode>(&view.node)) {
      list_.emplace_back(FillLinearGradient{frame, resolved(gradient->start, inherited),
                                            resolved(gradient->end, inherited)});
    }
  }

  Rgba resolved(const Colour& colour, const Inherited& inherited) const {
    std::optional<Rgba> value = resolveColour(colour, context_.palette, inherited.scheme);
    if (!value) {
      if (context_.report) context_.report("no colour is named " + std::get<1>(colour.value));
      value = Rgba{0.5, 0.5, 0.5, colour.opacity};
    }
    value->alpha *= inherited.opacity;
    return *value;
  }

  const DrawContext& context_;
  DrawList list_;
};

}  // namespace

DrawList makeDrawList(const LaidOutView& view, const DrawContext& context) {
  DrawListMaker maker(context);
  Inherited inherited;
  inherited.scheme = context.scheme;
  maker.add(view, std::move(inherited));
  return std::move(maker).take();
}

}  // namespace lanternfold
