// The verbs of a host that runs elsewhere, called over the session bus.
//
// Made by: the composition of the command line.
#pragma once

#include <chrono>
#include <optional>

#include "Platform/WidgetControl.h"

namespace lanternfold {

/// Starts no host. Each verb waits for its answer, as long as `limit` at the most, over a
/// connection of its own.
class BusWidgetControl final : public WidgetControl {
 public:
  /// `busAddress` is the session bus's, none without a session.
  explicit BusWidgetControl(std::optional<std::string> busAddress,
                            std::chrono::milliseconds limit = std::chrono::seconds(5));

  [[nodiscard]] Outcome<std::string> list() override;
  [[nodiscard]] Outcome<std::string> add(const std::string& kind, const std::string& family,
                                         const std::string& adapter) override;
  [[nodiscard]] Outcome<void> remove(const std::string& id) override;
  [[nodiscard]] Outcome<void> reload(const std::string& id) override;
  [[nodiscard]] Outcome<void> quit() override;

 private:
  const std::optional<std::string> busAddress_;
  const std::chrono::milliseconds limit_;
};

}  // namespace lanternfold
