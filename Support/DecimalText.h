// Decimal numbers as readers of a language write them: "1,2" in German, "١٫٢" in Arabic.
//
// Made by: the user's string table. Read by: the byte counts of rows and meters. What machines read
// is written plainly and does not come here.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace lanternfold {

/// A plain value, cheap to copy. Any thread.
class DecimalText {
 public:
  /// `locale` as ICU names it ("de_AT"). One that ICU does not know is written as its language is.
  explicit DecimalText(const std::string& locale);

  /// `digits` ("1024", "-0.25") with the language's own digits and decimal separator. No digit is
  /// rounded, added or grouped. What is no decimal number comes back as it is.
  [[nodiscard]] std::string text(std::string_view digits) const;

 private:
  class Format;

  std::shared_ptr<const Format> format_;
};

}  // namespace lanternfold
