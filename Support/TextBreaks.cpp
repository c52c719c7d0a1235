#include "Support/TextBreaks.h"

#include <cstdint>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/utext.h>

namespace lanternfold {
namespace {

using MakeIterator = icu::BreakIterator* (*)(const icu::Locale&, UErrorCode&);

/// Without ICU's data a text has no breaks but its ends.
std::vector<std::size_t> breaks(std::string_view text, MakeIterator makeIterator) {
  std::vector<std::size_t> offsets{0};
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> iterator(makeIterator(icu::Locale::getRoot(), status));
  icu::LocalUTextPointer bytes(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status));
  if (U_SUCCESS(status) != 0) iterator->setText(bytes.getAlias(), status);
  if (U_SUCCESS(status) != 0) {
    for (std::int32_t at = iterator->next(); at != icu::BreakIterator::DONE;
         at = iterator->next()) {
      offsets.push_back(static_cast<std::size_t>(at));
    }
  } else if (!text.empty()) {
    offsets.push_back(text.size());
  }
  return offsets;
}

}  // namespace

std::vector<std::size_t> characterBreaks(std::string_view text) {
  return breaks(text, icu::BreakIterator::createCharacterInstance);
}

std::vector<std::size_t> lineBreaks(std::string_view text) {
  return breaks(text, icu::BreakIterator::createLineInstance);
}

}  // namespace lanternfold
