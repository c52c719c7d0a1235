#include "HostProgram/Dialogs/Removals.h"

#include <vector>

#include "HostProgram/Dialogs/RemovalQuestion.h"
#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"
#include "WidgetHost/Desk/CatalogueRules.h"

namespace lanternfold {
namespace {

std::string removalOf(const std::string& id) { return "removal of " + id; }

}  // namespace

void Removals::ask(const std::string& id) {
  const auto card = desk_.card(id);
  if (!card) return;
  const RemovalFacts facts{.widget = displayNameOf(desk_.catalogue(), card->placed.kind) + ", " +
                                     widgetFamilyTitle(card->placed.family, strings_),
                           .isLast = desk_.cards().size() == 1};
  dialogs_.ask(removalOf(id), removalQuestion(facts, strings_), [this, id](std::size_t answer) {
    if (answer == removingAnswer) remove(id);
  });
}

void Removals::fromMenu(const std::string& id) {
  if (desk_.cards().size() > 1) {
    remove(id);
  } else {
    ask(id);
  }
}

void Removals::cardRemoved(const std::string& id) {
  dialogs_.withdraw(removalOf(id));
  askAnewForTheLast();
}

void Removals::remove(const std::string& id) {
  if (const auto removed = desk_.remove(id); !removed) dialogs_.tell(removed.error());
}

/// An open question says whether it is about the last one.
void Removals::askAnewForTheLast() {
  const std::vector<Card> cards = desk_.cards();
  if (cards.size() != 1) return;
  const std::string& last = cards.front().placed.id;
  if (!dialogs_.isOpen(removalOf(last))) return;
  dialogs_.withdraw(removalOf(last));
  ask(last);
}

}  // namespace lanternfold
