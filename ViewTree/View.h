// A view: what to draw, as a plain value. Views are made by the functions of ViewTree/Elements.h,
// changed by the modifiers below, compared with ==, and never change while they are laid out.
//
// Made by: the extension. Read by: the layout.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/ViewNodes.h"

namespace lanternfold {

/// A node and its children. Stacks, rows and grids have any number, a choice at least one, a row of
/// a content and its accessories three, a background two, every other modifier one, the rest none;
/// the functions that make views keep to that.
struct View {
  ViewNode node;
  std::vector<View> children;
  /// What a screen reader says in place of what the view would say by itself, of an accessory row
  /// before that.
  std::optional<std::string> accessibleName;

  [[nodiscard]] View frame(double width, double height, Alignment alignment = centred) &&;
  [[nodiscard]] View frame(FrameNode frame) &&;
  [[nodiscard]] View padding(double allEdges) &&;
  [[nodiscard]] View padding(EdgeInsets insets) &&;
  [[nodiscard]] View offset(double x, double y) &&;
  [[nodiscard]] View background(View behind, Alignment alignment = centred) &&;
  [[nodiscard]] View opacity(double light, double dark) &&;
  [[nodiscard]] View foreground(Colour colour) &&;
  [[nodiscard]] View clipped(double cornerRadius) &&;
  [[nodiscard]] View colourScheme(ColourScheme scheme) &&;
  [[nodiscard]] View invalidatableContent() &&;
  [[nodiscard]] View layoutPriority(double priority) &&;
  [[nodiscard]] View alignmentGuide(HorizontalAlignment guide, double by) &&;
  [[nodiscard]] View alignmentGuide(VerticalAlignment guide, double by) &&;
  /// The name is made fit to show, as texts are.
  [[nodiscard]] View accessible(std::string_view name) &&;

  friend bool operator==(const View&, const View&) = default;
};

/// No description is longer, in bytes; what does not fit is not said.
inline constexpr std::size_t longestAccessibleDescription = 4096;

/// What a screen reader says of `view`: its accessible name, else its own text, else what its
/// children say. The name of an accessory row is its title: what its children say follows it.
/// `drawingTime` stands in for the time in texts that show it. Decorations say
/// nothing.
[[nodiscard]] std::string accessibleDescription(const View& view, const std::string& drawingTime);
/// The same of views that stand together.
[[nodiscard]] std::string accessibleDescription(std::span<const View* const> views,
                                                const std::string& drawingTime);

}  // namespace lanternfold
