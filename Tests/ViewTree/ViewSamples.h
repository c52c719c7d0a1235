// Views of every kind, and views of any shape from a seed, for the tests of what reads views.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ViewTree/Elements.h"

namespace lanternfold {

/// One of every kind of node, none of its members at its default.
inline std::vector<View> viewsOfEveryKind() {
  const auto word = [] { return text("a", {{10}}); };
  const auto two = [&] { return std::vector<View>{word(), symbol("globe")}; };
  FrameNode frame;
  frame.width = {18, 1, 2.5, unlimited};
  frame.height = {0, 3, 4, 100'000};
  frame.alignment = topTrailing;
  const Colour fixed{Rgba{0.1, 0.25, 1, 0.5}, 0.75};
  return {
      text("caf\u00e9 \"\\ \U0001F680",
           {{13.5, FontWeight::bold, FontLeading::tight}, Truncation::middle, 0.6}),
      text("one two", {{10}, Truncation::tail, 1, 3, HorizontalAlignment::trailing}),
      text("3.85", {.font = {10}, .minimumScale = 0.5, .sizedWith = "10.54"}),
      drawingTime("Last update %@", {8, FontWeight::bold, FontLeading::tight}),
      symbol("globe"),
      symbol("wifi", 11),
      symbol("wifi", SymbolStyle{std::nullopt, 0.75}),
      image("LanternfoldLogo"),
      circle(2),
      roundedRectangle(3, fixed),
      linearGradient(Colour::named("Start"), {std::string("End"), 0.5}),
      emptyView(),
      hstack(VerticalAlignment::bottom, -1.5, two()),
      vstack(HorizontalAlignment::trailing, 1.0 / 3, two()),
      zstack(bottomLeading, two()),
      firstThatFits(FitAxes::horizontal, two()),
      wholeRows(HorizontalAlignment::leading, {9, 4, 1}, two()),
      wholeGrid({2, 8, -5, bottomLeading}, two()),
      accessoryRow({VerticalAlignment::top, 5, 64, 180.5}, circle(1), word(), emptyView()),
      word().frame(frame),
      word().padding({1, -2, 3, 4}),
      word().offset(40, -40),
      word().background(circle(1), topLeading),
      word().opacity(0.2, 0.1),
      word().foreground(fixed),
      word().clipped(4),
      word().colourScheme(ColourScheme::dark),
      word().invalidatableContent(),
      button("RefreshAppIntent", word()),
      button("RefreshAppIntent", word(), circle(1)),
      link("https://example.net/a?b=%20#c", word()),
      word().layoutPriority(-1),
      word().alignmentGuide(HorizontalAlignment::trailing, 2.5),
      word().alignmentGuide(VerticalAlignment::firstTextBaseline, -2),
      hstack(VerticalAlignment::firstTextBaseline, 0, two()),
      zstack({HorizontalAlignment::trailing, VerticalAlignment::firstTextBaseline}, two()),
      word().accessible("says \"this\""),
  };
}

/// Makes views of every kind and depth, with texts of every kind of character.
class ViewMaker {
 public:
  explicit ViewMaker(unsigned seed) : random_(seed) {}

  View make(std::size_t depth) {
    std::vector<View> samples = viewsOfEveryKind();
    View view = std::move(samples[below(samples.size())]);
    if (auto* words = std::get_if<TextNode>(&view.node))
      *words = std::get<TextNode>(anyText().node);
    const bool isModifier = view.children.size() == 1;
    const bool isFixed = std::holds_alternative<BackgroundNode>(view.node) ||
                         std::holds_alternative<AccessoryRowNode>(view.node) ||
                         std::holds_alternative<ButtonNode>(view.node);
    const bool isLeaf = view.children.empty();
    if (depth < 2) return isLeaf ? std::move(view) : anyText();
    if (!isLeaf && !isModifier && !isFixed) view.children.resize(1 + below(4));
    for (View& child : view.children) child = make(depth - 1);
    return view;
  }

 private:
  View anyText() {
    std::string content;
    for (std::size_t left = below(20); left > 0; --left) content += static_cast<char>(below(256));
    View view = text(content, {{static_cast<double>(below(40)) / 3}});
    return below(2) == 0 ? std::move(view) : std::move(view).accessible(content);
  }

  std::size_t below(std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_);
  }

  std::mt19937 random_;
};

}  // namespace lanternfold
