// Takes widgets off the desktop, and asks before where the user might not mean it.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

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

  /// The question about it is shut.
  void cardRemoved(const std::string& id);

 private:
  void remove(const std::string& id);
  void askAnewForTheLast();

  WidgetDesk& desk_;
  Dialogs& dialogs_;
  const StringTable& strings_;
};

}  // namespace lanternfold
