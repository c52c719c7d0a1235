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
  const std::string subject = removalOf(id);
  const RemovalFacts facts{.widget = displayNameOf(desk_.catalogue(), card->placed.kind) + ", " +
                                     widgetFamilyTitle(card->placed.family, strings_),
                           .isLast = desk_.cards().size() == 1};
  if (!dialogs_.isOpen(subject) && facts.isLast) calledLast_ = id;
  dialogs_.ask(subject, removalQuestion(facts, strings_), [this, id](std::size_t answer) {
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
  if (calledLast_ == id) calledLast_.reset();
  askAnew();
}

void Removals::remove(const std::string& id) {
  if (const auto removed = desk_.remove(id); !removed) dialogs_.tell(removed.error());
}

/// An open question says whether it is about the last one.
void Removals::askAnew() {
  const std::vector<Card> cards = desk_.cards();
  const std::optional last =
      cards.size() == 1 ? std::optional(cards.front().placed.id) : std::nullopt;
  if (last == calledLast_) return;
  const std::string asked = last ? *last : *calledLast_;
  calledLast_.reset();
  if (!dialogs_.isOpen(removalOf(asked))) return;
  dialogs_.withdraw(removalOf(asked));
  ask(asked);
}

}  // namespace lanternfold
