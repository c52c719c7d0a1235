#include "Wiring/DrawingLanguage.h"

#include <algorithm>

#include "Support/RelativeDateText.h"

namespace lanternfold {

std::string drawingTimeText(const Machine& machine) {
  const auto now = machine.platform.clock.now();
  return relativeDateText(now, now, {.locale = machine.language.dateLocale, .timeZone = {}});
}

std::string languageTag(const Machine& machine) {
  std::string tag = machine.language.catalogue.empty() ? "en" : machine.language.catalogue;
  std::ranges::replace(tag, '_', '-');
  return tag;
}

LayoutDirection layoutDirection(const Machine& machine) {
  return machine.language.isRightToLeft ? LayoutDirection::rightToLeft
                                        : LayoutDirection::leftToRight;
}

}  // namespace lanternfold
