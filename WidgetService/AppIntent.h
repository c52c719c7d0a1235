// What a button of a widget can do.
//
// Made by: the extension, a type for each intent. Read by: whoever performs intents for a host.
#pragma once

#include <string>

namespace lanternfold {

/// An intent that has been performed has nothing to say.
struct IntentResult {
  friend bool operator==(const IntentResult&, const IntentResult&) = default;
};

/// After an intent of a button was performed, the host asks for the widget's timeline anew.
class AppIntent {
 public:
  virtual ~AppIntent() = default;

  /// As buttons and hosts call it.
  [[nodiscard]] virtual std::string name() const = 0;
  /// In the user's language.
  [[nodiscard]] virtual std::string title() const = 0;
  /// Whether the main application is opened by it.
  [[nodiscard]] virtual bool openAppWhenRun() const { return false; }
  /// Main queue; never blocks.
  [[nodiscard]] virtual IntentResult perform() const = 0;
};

}  // namespace lanternfold
