// Byte counts as a reader of the user's language expects them: "Zero KB", "999 bytes", "1.2 MB".
//
// Read by: the hotspot row (text as a whole) and the byte meters (number and unit apart).
// Exact integer arithmetic throughout; rounding is half to even, and a count that rounds up to a
// full unit is shown in the next one ("1 GB", never "1000 MB"); what is less than one stays in its
// unit and is not grouped ("1000 KB" where a unit has 1024 of the one below). A formatter is a
// plain value; its operations may be called on any thread if the look-ups may.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace lanternfold {

enum class ByteCountStyle {
  /// Multiples of 1000 from bytes to EB. No fraction for bytes and KB, one digit for MB, two from
  /// GB on, trailing zeros dropped. Zero is a word.
  decimal,
  /// Multiples of 1024 from KB to TB, with fractions as above; below 1 KB one digit of KB. Zero is
  /// the number 0.
  binaryFromKilobytes,
};

class ByteCountFormatter {
 public:
  /// Gives the text of the user's language for an English key: "Zero", "byte", "bytes", "KB", "MB",
  /// "GB", "TB", "PB" or "EB".
  using Localization = std::function<std::string(std::string_view key)>;

  /// Gives a decimal number ("1.2") in the digits and with the separator of the user's language.
  using DecimalWriting = std::function<std::string(std::string_view digits)>;

  ByteCountFormatter(ByteCountStyle style, Localization localized, DecimalWriting written);

  /// Number and unit with a space between them.
  [[nodiscard]] std::string text(std::uint64_t byteCount) const;
  /// The number without its unit, or the word for zero in the decimal style.
  [[nodiscard]] std::string number(std::uint64_t byteCount) const;
  /// The unit that `number` of the same count is in.
  [[nodiscard]] std::string unit(std::uint64_t byteCount) const;

 private:
  ByteCountStyle style_;
  Localization localized_;
  DecimalWriting written_;
};

}  // namespace lanternfold
