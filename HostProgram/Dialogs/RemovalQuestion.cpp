#include "HostProgram/Dialogs/RemovalQuestion.h"

#include <utility>

namespace lanternfold {

Question removalQuestion(const RemovalFacts& facts, const StringTable& strings) {
  std::string explanation = facts.widget;
  if (facts.isLast) {
    explanation += "\n\n" + strings.localized(
                                "It is the last one. To add widgets again, start Lanternfold "
                                "Widgets once more.");
  }
  return {.title = strings.localized("Remove widget"),
          .text = strings.localized("Remove this widget from the desktop?"),
          .explanation = std::move(explanation),
          .answers = {strings.localized("Cancel"), strings.localized("Remove")},
          .defaultAnswer = removingAnswer};
}

}  // namespace lanternfold
