// Colours as views name them, and their values in each colour scheme.
//
// A view holds a `Colour`: a fixed value, or the name of a pair of which the scheme picks one when
// the view is painted. Made by: the views. Read by: the draw list.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace lanternfold {

/// Components in the sRGB colour space, 0 to 1, alpha not multiplied in.
struct Rgba {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  friend bool operator==(const Rgba&, const Rgba&) = default;
};

enum class ColourScheme { light, dark };

struct Colour {
  std::variant<Rgba, std::string> value;  ///< a fixed value, or the name of a pair of a palette
  double opacity = 1;                     ///< multiplies the value's own alpha

  [[nodiscard]] static Colour white(double opacity = 1) { return {Rgba{1, 1, 1, 1}, opacity}; }
  [[nodiscard]] static Colour named(std::string name) { return {std::move(name), 1}; }

  friend bool operator==(const Colour&, const Colour&) = default;
};

struct ColourPair {
  Rgba light;
  Rgba dark;

  friend bool operator==(const ColourPair&, const ColourPair&) = default;
};

using ColourPalette = std::map<std::string, ColourPair, std::less<>>;

/// The colour's value in `scheme`; none when it names a pair that `palette` lacks.
[[nodiscard]] std::optional<Rgba> resolveColour(const Colour& colour, const ColourPalette& palette,
                                                ColourScheme scheme);

/// How well two opaque colours stand apart: 1 (equal) to 21 (black on white), by the luminance
/// formula of the Web Content Accessibility Guidelines 2.
[[nodiscard]] double contrastRatio(const Rgba& one, const Rgba& other);

/// `over` painted on the opaque colour `under`.
[[nodiscard]] Rgba blended(const Rgba& over, const Rgba& under);

}  // namespace lanternfold
