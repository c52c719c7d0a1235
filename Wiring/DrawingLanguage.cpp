#include "Wiring/DrawingLanguage.h"

#include "Support/RelativeDateText.h"

namespace lanternfold {

std::string drawingTimeText(const Machine& machine) {
  const auto now = machine.platform.clock.now();
  return relativeDateText(now, now, {.locale = machine.language.dateLocale, .timeZone = {}});
}

LayoutDirection layoutDirection(const Machine& machine) {
  return machine.language.isRightToLeft ? LayoutDirection::rightToLeft
                                        : LayoutDirection::leftToRight;
}

}  // namespace lanternfold
