#include "Support/RelativeDateText.h"

#include <memory>

#include <unicode/datefmt.h>
#include <unicode/udisplaycontext.h>
#include <unicode/unistr.h>

namespace lanternfold {

std::string relativeDateText(std::chrono::system_clock::time_point moment) {
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kShortRelative, icu::DateFormat::kShort, icu::Locale::getDefault()));
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
