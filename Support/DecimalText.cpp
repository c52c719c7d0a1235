#include "Support/DecimalText.h"

#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

namespace lanternfold {

namespace {

/// A name that is too long makes a bogus locale, which ICU does not know how to write numbers in.
icu::Locale usableLocale(const std::string& name) {
  const icu::Locale locale(name.c_str());
  return locale.isBogus() != 0 ? icu::Locale::getEnglish() : locale;
}

}  // namespace

class DecimalText::Format {
 public:
  explicit Format(const std::string& locale)
      : formatter_(icu::number::NumberFormatter::withLocale(usableLocale(locale))
                       .grouping(UNUM_GROUPING_OFF)
                       .precision(icu::number::Precision::unlimited())) {}

  [[nodiscard]] std::string text(std::string_view digits) const {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString written =
        formatter_.formatDecimal({digits.data(), static_cast<std::int32_t>(digits.size())}, status)
            .toString(status);
    std::string text;
    if (U_FAILURE(status)) return text.assign(digits);
    return written.toUTF8String(text);
  }

 private:
  icu::number::LocalizedNumberFormatter formatter_;
};

DecimalText::DecimalText(const std::string& locale)
    : format_(std::make_shared<const Format>(locale)) {}

std::string DecimalText::text(std::string_view digits) const { return format_->text(digits); }

}  // namespace lanternfold
