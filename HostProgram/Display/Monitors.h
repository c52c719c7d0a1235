// The monitors that the toolkit knows, as the placement knows them.
//
// Made by: the host's windows. Main thread.
#pragma once

#include <functional>
#include <gdk/gdk.h>
#include <memory>
#include <string>
#include <vector>

#include "HostProgram/Cards/CardDrag.h"
#include "Platform/Clock.h"

namespace lanternfold {

/// Those that are plugged in now, in the toolkit's order.
[[nodiscard]] std::vector<PlacedMonitor> currentMonitors();

/// Null when there is none of that name.
[[nodiscard]] GdkMonitor* monitorNamed(const std::string& name);

/// Hears of monitors that come, go, or change in size, scale or work area.
class MonitorWatch final {
 public:
  /// `changed` is called once for all changes that come together, as of `SettlingPace`.
  MonitorWatch(const Clock& clock, std::function<void()> changed);
  ~MonitorWatch();
  MonitorWatch(const MonitorWatch&) = delete;
  MonitorWatch& operator=(const MonitorWatch&) = delete;

  /// Something else says that there was a change.
  void countAgain();

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace lanternfold
