// Takes widgets off the desktop, and asks before where the user might not mean it.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <optional>
#include <string>

#include "HostProgram/Dialogs/Dialogs.h"
#include "Platform/StringTable.h"
#include "WidgetHost/Desk/WidgetDesk.h"

namespace lanternfold {

class Removals {
 public:
  /// Everything outlives the removals.
  Removals(WidgetDesk& desk, Dialogs& dialogs, const StringTable& strings)
      : desk_(desk), dialogs_(dialogs), strings_(strings) {}

  /// Whether the card `id` is to go.
  void ask(const std::string& id);

  /// The user has taken it from a menu and means it; but with the last card the menu goes, of which
  /// the user is to hear before.
  void fromMenu(const std::string& id);

  /// No question calls a widget the last one any more.
  void cardAdded() { askAnew(); }

  /// The question about it is shut.
  void cardRemoved(const std::string& id);

 private:
  void remove(const std::string& id);
  void askAnew();

  WidgetDesk& desk_;
  Dialogs& dialogs_;
  const StringTable& strings_;
  std::optional<std::string> calledLast_;  ///< by the question about it that was opened
};

}  // namespace lanternfold
