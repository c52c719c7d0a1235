// The intent of the refresh button: the widget's timeline is to be asked for anew.
#pragma once

#include <string>

#include "Platform/StringTable.h"
#include "WidgetService/AppIntent.h"

namespace lanternfold {

/// Has no parameters and changes nothing itself: what the host does after an intent is its effect.
class RefreshAppIntent final : public AppIntent {
 public:
  static constexpr const char* intentName = "RefreshAppIntent";

  /// `strings` outlives the intent.
  explicit RefreshAppIntent(const StringTable& strings) : strings_(strings) {}

  [[nodiscard]] std::string name() const override { return intentName; }
  [[nodiscard]] std::string title() const override {
    return strings_.localized("Bramblecast Refresh");
  }
  [[nodiscard]] IntentResult perform() const override { return {}; }

 private:
  const StringTable& strings_;
};

}  // namespace lanternfold
