// usage: SystemTestFindWlanName DATA-FOLDER
// Prints the name of the Wi-Fi interface as the system's own network path has it, or "none". What
// is remembered of it stays in the data folder.
#include <cstdio>
#include <string>

#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "PlatformLinux/System/SystemClock.h"

namespace {

/// Waits a hundred times longer than the finder means to, so that a slow machine misses no path.
class PatientClock final : public lanternfold::Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return clock_.now(); }
  [[nodiscard]] std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::time_point(clock_.steadyNow().time_since_epoch() / 100);
  }
  void sleep(std::chrono::nanoseconds duration) const override { clock_.sleep(duration); }

 private:
  lanternfold::SystemClock clock_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  using namespace lanternfold;
  if (argumentCount != 2) return 125;
  StreamDiagnosticLog diagnostics(stderr);
  const PatientClock clock;
  const DataDirectory directory(arguments[1]);
  SqliteUserDefaultsSuites suites(directory, diagnostics);
  EventLoop loop;
  AsioDispatch dispatch(loop);
  LinuxPathMonitorFactory pathMonitors(loop);
  NetworkPathWlanInterfaceNameFinder finder(
      suites.standard(), {.pathMonitors = pathMonitors, .dispatch = dispatch, .clock = clock});
  std::puts(finder.wlanInterfaceName().value_or("none").c_str());
}
