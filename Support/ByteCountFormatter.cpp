#include "Support/ByteCountFormatter.h"

#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "Support/Localizable.h"

namespace lanternfold {
namespace {

constexpr std::string_view decimalPoint = ".";

struct Unit {
  std::string_view key;
  std::uint64_t size = 1;  ///< bytes
  int fractionDigits = 0;  ///< shown at most
};

constexpr std::uint64_t powerOf(std::uint64_t base, int exponent) {
  return exponent == 0 ? 1 : base * powerOf(base, exponent - 1);
}

constexpr std::array decimalUnits{
    Unit{localizable("bytes"), 1, 0},
    Unit{localizable("KB"), powerOf(1000, 1), 0},
    Unit{localizable("MB"), powerOf(1000, 2), 1},
    Unit{localizable("GB"), powerOf(1000, 3), 2},
    Unit{localizable("TB"), powerOf(1000, 4), 2},
    Unit{localizable("PB"), powerOf(1000, 5), 2},
    Unit{localizable("EB"), powerOf(1000, 6), 2},
};

constexpr std::array binaryUnits{
    Unit{localizable("KB"), powerOf(1024, 1), 0},
    Unit{localizable("MB"), powerOf(1024, 2), 1},
    Unit{localizable("GB"), powerOf(1024, 3), 2},
    Unit{localizable("TB"), powerOf(1024, 4), 2},
};
constexpr Unit partOfKilobyte{localizable("KB"), 1024, 1};

/// A count in a unit, as a whole number of the unit's smallest shown fraction.
struct RoundedCount {
  Unit unit;
  std::uint64_t scaled = 0;
};

/// Works digit by digit: the largest unit times ten is the largest product, and that still fits.
RoundedCount roundedHalfToEven(std::uint64_t byteCount, const Unit& unit) {
  std::uint64_t scaled = byteCount / unit.size;
  std::uint64_t remainder = byteCount % unit.size;
  for (int digit = 0; digit < unit.fractionDigits; ++digit) {
    remainder *= 10;
    scaled = scaled * 10 + remainder / unit.size;
    remainder %= unit.size;
  }
  const std::uint64_t rest = unit.size - remainder;
  if (remainder > rest || (remainder == rest && scaled % 2 == 1)) ++scaled;
  return {.unit = unit, .scaled = scaled};
}

RoundedCount roundedInAFittingUnit(std::uint64_t byteCount, std::span<const Unit> units) {
  for (std::size_t position = 0; position + 1 < units.size(); ++position) {
    const Unit& unit = units[position];
    const std::uint64_t unitsPerNext = units[position + 1].size / unit.size;
    const auto rounded = roundedHalfToEven(byteCount, unit);
    if (rounded.scaled < unitsPerNext * powerOf(10, unit.fractionDigits)) return rounded;
  }
  return roundedHalfToEven(byteCount, units.back());
}

RoundedCount rounded(std::uint64_t byteCount, ByteCountStyle style) {
  if (style == ByteCountStyle::decimal) return roundedInAFittingUnit(byteCount, decimalUnits);
  if (byteCount < partOfKilobyte.size) return roundedHalfToEven(byteCount, partOfKilobyte);
  return roundedInAFittingUnit(byteCount, binaryUnits);
}

std::string digitsOf(const RoundedCount& count) {
  const std::uint64_t scale = powerOf(10, count.unit.fractionDigits);
  std::string text = std::to_string(count.scaled / scale);
  const std::uint64_t fraction = count.scaled % scale;
  if (fraction == 0) return text;
  // The leading one keeps the zeros behind the point.
  std::string digits = std::to_string(scale + fraction).substr(1);
  digits.erase(digits.find_last_not_of('0') + 1);
  return text.append(decimalPoint).append(digits);
}

}  // namespace

ByteCountFormatter::ByteCountFormatter(ByteCountStyle style, Localization localized,
                                       DecimalWriting written)
    : style_(style), localized_(std::move(localized)), written_(std::move(written)) {}

std::string ByteCountFormatter::text(std::uint64_t byteCount) const {
  return number(byteCount) + " " + unit(byteCount);
}

std::string ByteCountFormatter::number(std::uint64_t byteCount) const {
  if (byteCount == 0 && style_ == ByteCountStyle::decimal) return localized_("Zero");
  return written_(digitsOf(rounded(byteCount, style_)));
}

std::string ByteCountFormatter::unit(std::uint64_t byteCount) const {
  if (style_ == ByteCountStyle::decimal) {
    if (byteCount == 0) return localized_("KB");
    if (byteCount == 1) return localized_("byte");
  }
  return localized_(rounded(byteCount, style_).unit.key);
}

}  // namespace lanternfold
