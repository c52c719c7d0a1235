#include "Support/RelativeDateText.h"

#include <memory>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/udisplaycontext.h>
#include <unicode/unistr.h>

namespace lanternfold {
namespace {

/// The user's locale. An environment whose name of one is too long leaves ICU with a bogus one,
/// with which it crashes when it makes a format (72).
const icu::Locale& usableLocale() {
  const icu::Locale& locale = icu::Locale::getDefault();
  return locale.isBogus() != 0 ? icu::Locale::getEnglish() : locale;
}

}  // namespace

std::string relativeDateText(std::chrono::system_clock::time_point moment) {
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kShortRelative, icu::DateFormat::kShort, usableLocale()));
  std::string text;
  if (format == nullptr) return text;
  UErrorCode status = U_ZERO_ERROR;
  format->setContext(UDISPCTX_CAPITALIZATION_FOR_STANDALONE, status);
  using Milliseconds = std::chrono::duration<double, std::milli>;
  icu::UnicodeString result;
  format->format(std::chrono::duration_cast<Milliseconds>(moment.time_since_epoch()).count(),
                 result);
  return result.toUTF8String(text);
}

}  // namespace lanternfold
