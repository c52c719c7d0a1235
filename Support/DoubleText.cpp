#include "Support/DoubleText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace lanternfold {
namespace {

bool readsBestInPlainDigits(double value) {
  const double magnitude = std::abs(value);
  return magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
}

}  // namespace

std::string doubleText(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  // Sixteen digits before or twenty-one behind the point, or 17 digits with an exponent.
  std::array<char, 40> buffer{};
  const auto notation =
      readsBestInPlainDigits(value) ? std::chars_format::fixed : std::chars_format::scientific;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, notation).ptr;
  std::string text(buffer.data(), end);
  if (text.find('.') == std::string::npos) {
    const auto exponent = text.find('e');
    text.insert(exponent == std::string::npos ? text.size() : exponent, ".0");
  }
  return text;
}

}  // namespace lanternfold
