// The seam to a module's table of localised texts.
//
// Linux side: `GettextStringTable`. Fake: `FakeStringTable`.
#pragma once

#include <string>
#include <string_view>

namespace lanternfold {

/// Any thread; never fails.
class StringTable {
 public:
  virtual ~StringTable() = default;

  /// The text of the user's language for `key`, an English text; `key` itself when there is none.
  /// Placeholders ("%@") come back as they stand in the table.
  [[nodiscard]] virtual std::string localized(std::string_view key) const = 0;

  /// `digits` ("1024", "0.25") as the user's language writes the number; as they are in English.
  [[nodiscard]] virtual std::string localizedDecimal(std::string_view digits) const {
    return std::string(digits);
  }
};

}  // namespace lanternfold
