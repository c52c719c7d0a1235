#include "HostProgram/Dialogs/RemovalQuestion.h"

namespace lanternfold {

Question removalQuestion(bool isLast, const StringTable& strings) {
  return {.title = strings.localized("Remove widget"),
          .text = strings.localized("Remove this widget from the desktop?"),
          .explanation =
              isLast ? strings.localized(
                           "It is the last one. To add widgets again, start Lanternfold Widgets "
                           "once more.")
                     : std::string(),
          .answers = {strings.localized("Cancel"), strings.localized("Remove")},
          .defaultAnswer = removingAnswer};
}

}  // namespace lanternfold
