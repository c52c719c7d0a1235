// Starts of the host, remembered.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Wiring/HostStarter.h"

namespace lanternfold {

class FakeHostStarter final : public HostStarter {
 public:
  enum class Manner { inItsPlace, detached };
  struct Start {
    Manner manner;
    std::vector<std::string> arguments;
    friend bool operator==(const Start&, const Start&) = default;
  };

  [[nodiscard]] const std::vector<Start>& starts() const { return starts_; }
  void failWith(CommandFailure failure) { failure_ = std::move(failure); }

  [[nodiscard]] CommandFailure become(const std::vector<std::string>& arguments) override {
    starts_.push_back({.manner = Manner::inItsPlace, .arguments = arguments});
    return failure_.value_or(workFailed("this process is still here"));
  }
  [[nodiscard]] std::expected<void, CommandFailure> startDetached(
      const std::vector<std::string>& arguments) override {
    starts_.push_back({.manner = Manner::detached, .arguments = arguments});
    if (failure_) return std::unexpected(*failure_);
    return {};
  }

 private:
  std::vector<Start> starts_;
  std::optional<CommandFailure> failure_;
};

}  // namespace lanternfold
