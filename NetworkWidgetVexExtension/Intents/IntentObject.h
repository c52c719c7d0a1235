// A value of an intent's parameter, of whatever kind.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

struct IntentObject {
  std::optional<std::string> identifier;
  std::string display;
  std::optional<std::string> pronunciationHint = std::nullopt;

  friend bool operator==(const IntentObject&, const IntentObject&) = default;
};

}  // namespace lanternfold
