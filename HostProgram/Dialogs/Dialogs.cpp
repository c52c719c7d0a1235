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
  // There is no other window by which to find it again.
  dialog->set_skip_taskbar_hint(false);
  dialog->set_position(Gtk::WIN_POS_CENTER);
  if (!question.explanation.empty()) dialog->set_secondary_text(question.explanation);
  int number = 0;
  for (const std::string& answer : question.answers) dialog->add_button(answer, number++);
  dialog->set_default_response(static_cast<int>(question.defaultAnswer));
  return dialog;
}

}  // namespace

void Dialogs::ask(const std::string& subject, const Question& question,
                  std::function<void(std::size_t answer)> answered) {
  Dialog& dialog = open_[subject];
  if (!dialog) {
    dialog = makeDialog(question);
    dialog->signal_response().connect(
        [this, subject, answered = std::move(answered)](int response) {
          withdraw(subject);
          if (response >= 0) answered(static_cast<std::size_t>(response));
        });
  }
  opening_();
  dialog->present();
}

void Dialogs::tell(const std::string& sentence) {
  ask(sentence,
      {.title = productTitle,
       .text = sentence + ".",
       .explanation = {},
       .answers = {strings_.localized("Close")}},
      [](std::size_t) {});
}

/// It may be just its own signal that has led here.
void Dialogs::withdraw(const std::string& subject) {
  const auto found = open_.find(subject);
  if (found == open_.end()) return;
  found->second->hide();
  shut_.push_back(std::move(found->second));
  open_.erase(found);
  Glib::signal_idle().connect_once(sigc::mem_fun(*this, &Dialogs::forgetShut));
}

void Dialogs::forgetShut() { shut_.clear(); }

}  // namespace lanternfold
