#include "HostProgram/Dialogs/Dialogs.h"

#include <glibmm/main.h>

namespace lanternfold {
namespace {

constexpr const char* productTitle = "Lanternfold Widgets";

std::unique_ptr<Gtk::MessageDialog> makeDialog(const Question& question) {
  // Without a picture of its kind: there may be no theme that has one.
  auto dialog = std::make_unique<Gtk::MessageDialog>(question.text, /*use_markup=*/false,
                                                     Gtk::MESSAGE_OTHER, Gtk::BUTTONS_NONE);
  dialog->set_title(question.title);
  if (!question.explanation.empty()) dialog->set_secondary_text(question.explanation);
  int number = 0;
  for (const std::string& answer : question.answers) dialog->add_button(answer, number++);
  dialog->set_default_response(static_cast<int>(question.defaultAnswer));
  return dialog;
}

}  // namespace

void Dialogs::ask(const Question& question, std::function<void(std::size_t answer)> answered) {
  Gtk::MessageDialog* const dialog = open_.emplace_back(makeDialog(question)).get();
  dialog->signal_response().connect([this, dialog, answered = std::move(answered)](int response) {
    dialog->hide();
    // Not inside of its own signal.
    Glib::signal_idle().connect_once(sigc::bind(sigc::mem_fun(*this, &Dialogs::forget), dialog));
    if (response >= 0) answered(static_cast<std::size_t>(response));
  });
  dialog->present();
}

void Dialogs::tell(const std::string& sentence) {
  ask({.title = productTitle,
       .text = sentence + ".",
       .explanation = {},
       .answers = {strings_.localized("Close")}},
      [](std::size_t) {});
}

void Dialogs::forget(Gtk::MessageDialog* dialog) {
  std::erase_if(open_, [dialog](const auto& open) { return open.get() == dialog; });
}

}  // namespace lanternfold
