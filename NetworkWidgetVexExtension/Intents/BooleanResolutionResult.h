// What became of a parameter that is true or false.
//
// Made by: whoever serves an intent. Read by: the host that asks for the intent's parameters.
#pragma once

#include <optional>

namespace lanternfold {

class BooleanResolutionResult {
 public:
  enum class Outcome { success, confirmationRequired, needsValue, notRequired, unsupported };

  [[nodiscard]] static BooleanResolutionResult success(bool resolved) {
    return {Outcome::success, resolved};
  }
  /// The user is to be asked whether he means `value`; none leaves it to him.
  [[nodiscard]] static BooleanResolutionResult confirmationRequired(std::optional<bool> value) {
    return {Outcome::confirmationRequired, value};
  }
  [[nodiscard]] static BooleanResolutionResult needsValue() {
    return {Outcome::needsValue, std::nullopt};
  }
  [[nodiscard]] static BooleanResolutionResult notRequired() {
    return {Outcome::notRequired, std::nullopt};
  }
  [[nodiscard]] static BooleanResolutionResult unsupported() {
    return {Outcome::unsupported, std::nullopt};
  }

  [[nodiscard]] Outcome outcome() const { return outcome_; }
  /// Of a success, or what is to be confirmed.
  [[nodiscard]] std::optional<bool> value() const { return value_; }

  friend bool operator==(const BooleanResolutionResult&, const BooleanResolutionResult&) = default;

 private:
  BooleanResolutionResult(Outcome outcome, std::optional<bool> value)
      : outcome_(outcome), value_(value) {}

  Outcome outcome_;
  std::optional<bool> value_;
};

}  // namespace lanternfold
