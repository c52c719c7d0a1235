#include "ViewTree/DumpFigures.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lanternfold {
namespace {

std::string hexPair(double component) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned>(std::lround(component * 255)) & 0xFFU;
  return {digits[value >> 4U], digits[value & 0xFU]};
}

}  // namespace

std::string dumped(double length) {
  if (std::isinf(length)) return "unlimited";
  const double rounded = std::round(length * 10) / 10;
  std::array<char, 64> digits{};
  // The sum turns a negative zero into a zero.
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), rounded + 0.0).ptr;
  return {digits.data(), end};
}

std::string dumped(const Rect& frame) {
  return dumped(frame.left()) + ',' + dumped(frame.top()) + ' ' + dumped(frame.size.width) + 'x' +
         dumped(frame.size.height);
}

std::string dumped(const Rgba& colour) {
  return '#' + hexPair(colour.red) + hexPair(colour.green) + hexPair(colour.blue) +
         hexPair(colour.alpha);
}

std::string dumped(const Colour& colour) {
  const auto* name = std::get_if<std::string>(&colour.value);
  std::string text = name ? *name : dumped(std::get<Rgba>(colour.value));
  if (colour.opacity != 1) text += " at " + dumped(colour.opacity);
  return text;
}

std::string dumped(const Font& font) {
  std::string text = dumped(font.size);
  if (font.weight == FontWeight::bold) text += " bold";
  if (font.leading == FontLeading::tight) text += " tight";
  return text;
}

std::string dumpedStrength(const std::optional<double>& strength) {
  return strength ? " strength " + dumped(*strength) : "";
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') result += '\\';
    result += character;
  }
  return result + '"';
}

}  // namespace lanternfold
