// Questions and messages to the user, in windows of their own that keep nothing waiting.
//
// Made by: the host's application, once. Main thread.
#pragma once

#include <functional>
#include <gtkmm/messagedialog.h>
#include <memory>
#include <sigc++/trackable.h>
#include <string>
#include <vector>

#include "Platform/StringTable.h"

namespace lanternfold {

/// All texts are plain, never markup.
struct Question {
  std::string title;
  std::string text;
  std::string explanation;
  std::vector<std::string> answers;  ///< at least one, in the order of the buttons
  std::size_t defaultAnswer = 0;     ///< that of the Enter key
};

class Dialogs : public sigc::trackable {
 public:
  /// `strings` outlives the dialogs.
  explicit Dialogs(const StringTable& strings) : strings_(strings) {}
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;

  /// `answered` is called with the number of the answer, unless the window is closed without one.
  void ask(const Question& question, std::function<void(std::size_t answer)> answered);

  /// A sentence without its full stop.
  void tell(const std::string& sentence);

 private:
  void forget(Gtk::MessageDialog* dialog);

  const StringTable& strings_;
  std::vector<std::unique_ptr<Gtk::MessageDialog>> open_;
};

}  // namespace lanternfold
