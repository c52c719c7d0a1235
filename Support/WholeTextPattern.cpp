#include "Support/WholeTextPattern.h"

#include <cstdint>
#include <limits>
#include <string>

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

}  // namespace

struct WholeTextPattern::Compiled {
  std::unique_ptr<icu::RegexPattern> pattern;
};

WholeTextPattern::WholeTextPattern(std::string_view expression) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexPattern> pattern(
      icu::RegexPattern::compile(unicode(expression), 0, status));
  if (U_FAILURE(status) != 0) {
    fatalError("the regular expression " + std::string(expression) + " does not compile");
  }
  compiled_ = std::make_shared<const Compiled>(std::move(pattern));
}

bool WholeTextPattern::matches(std::string_view text) const {
  if (text.size() > std::numeric_limits<std::int32_t>::max()) return false;
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString units = unicode(text);
  const std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(units, status));
  return U_SUCCESS(status) != 0 && matcher->matches(status) != 0 && U_SUCCESS(status) != 0;
}

}  // namespace lanternfold
