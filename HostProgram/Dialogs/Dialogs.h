// Questions and messages to the user, in windows of their own that keep nothing waiting.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <gtkmm/messagedialog.h>
#include <map>
#include <memory>
#include <sigc++/trackable.h>
#include <string>
#include <utility>
#include <vector>

#include "HostProgram/Dialogs/Question.h"
#include "Platform/StringTable.h"

namespace lanternfold {

class Dialogs : public sigc::trackable {
 public:
  /// `opening` is called before a window is shown: what would cover it is to make room. Both
  /// outlive the dialogs.
  Dialogs(const StringTable& strings, std::function<void()> opening)
      : strings_(strings), opening_(std::move(opening)) {}
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;

  /// `answered` is called with the number of the answer, unless the window is closed without one.
  /// `subject` names what the question is about, for the program alone: while one about the same is
  /// open, that one comes to the front instead.
  void ask(const std::string& subject, const Question& question,
           std::function<void(std::size_t answer)> answered);

  /// Whether the user is asked about `subject` at the moment.
  [[nodiscard]] bool isOpen(const std::string& subject) const { return open_.contains(subject); }

  /// Shuts what is asked about `subject`, if anything: it is settled, or is not there any more.
  void withdraw(const std::string& subject);

  /// A sentence without its full stop.
  void tell(const std::string& sentence);

 private:
  using Dialog = std::unique_ptr<Gtk::MessageDialog>;

  void forgetShut();

  const StringTable& strings_;
  std::function<void()> opening_;
  std::map<std::string, Dialog> open_;  ///< by subject
  std::vector<Dialog> shut_;            ///< until nobody can be within one of their signals
};

}  // namespace lanternfold
