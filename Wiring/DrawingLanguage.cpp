#include "Wiring/DrawingLanguage.h"

#include <algorithm>

#include "Support/RelativeDateText.h"

namespace lanternfold {

std::string drawingTimeText(const Machine& machine) {
  const auto now = machine.platform.clock.now();
  return relativeDateText(now, now, {.locale = machine.language.dateLocale, .timeZone = {}});
}

std::string languageTag(const UserLanguage& language) {
  std::string tag = language.catalogue.empty() ? "en" : language.catalogue;
  std::ranges::replace(tag, '_', '-');
  return tag;
}

LayoutDirection layoutDirection(const UserLanguage& language) {
  return language.isRightToLeft ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
}

}  // namespace lanternfold
