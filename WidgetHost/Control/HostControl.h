// The verbs of the session bus over the widgets of this host.
//
// Made by: the host's composition. Called by: `WidgetControlObject`.
#pragma once

#include <functional>

#include "Platform/WidgetControl.h"
#include "WidgetHost/Desk/WidgetDesk.h"

namespace lanternfold {

/// On the main queue. What comes from the bus is checked here as far as the desk does not.
class HostControl final : public WidgetControl {
 public:
  /// `desk` outlives this. `end` has the program end, and is called within `quit`.
  HostControl(WidgetDesk& desk, std::function<void()> end);

  [[nodiscard]] Outcome<std::string> list() override;
  [[nodiscard]] Outcome<std::string> add(const std::string& kind, const std::string& family,
                                         const std::string& adapter) override;
  [[nodiscard]] Outcome<void> remove(const std::string& id) override;
  [[nodiscard]] Outcome<void> reload(const std::string& id) override;
  [[nodiscard]] Outcome<void> quit() override;

 private:
  WidgetDesk& desk_;
  const std::function<void()> end_;
};

}  // namespace lanternfold
