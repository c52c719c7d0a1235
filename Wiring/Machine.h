// What a command needs of the machine it runs on.
//
// Made by: `LinuxMachine`, and by the tests over fakes. Read by: the commands.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "Platform/Platform.h"
#include "Platform/WidgetControl.h"
#include "PlatformLinux/Location/ConsentAuthority.h"
#include "PlatformLinux/Location/ConsentRecord.h"
#include "PlatformLinux/Wifi/WifiReport.h"
#include "Support/UserLanguage.h"
#include "Wiring/HostStarter.h"
#include "Wiring/SoleRecorder.h"

namespace lanternfold {

/// The loop that runs the main queue. Main thread only, but for `stop`.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Runs works of the main queue until `stop`, or until the user or the system asks the program to
  /// end (SIGINT, SIGTERM, a terminal that is closed).
  virtual void runUntilInterrupted() = 0;
  /// Runs works of the main queue until `stop`, for `limit` at the most. An interruption ends the
  /// program as it would any other.
  virtual void runFor(std::chrono::milliseconds limit) = 0;
  /// Ends a run under way after the work at hand; without one, the next run ends at once.
  virtual void stop() = 0;
};

struct Machine {
  Platform platform;
  /// Texts of the program as a whole, beside those of its modules. One catalogue holds both.
  const StringTable& mainBundleStrings;
  /// What both tables speak, and in what dates are written and views laid out.
  UserLanguage language;
  /// Counters of 64 bits, which need no carrying forward.
  std::shared_ptr<ConnectionMetricsReader> metricsReader;
  SoleRecorder& soleRecorder;
  /// Everything the kernel tells of the Wi-Fi at this moment; names only with the user's consent,
  /// as from the seam's Wi-Fi client. Any thread.
  std::function<WifiReading()> readWifi;
  /// Where the user's decisions on Wi-Fi names go.
  ConsentRecord& consentRecord;
  /// Whom `consentRecord` has to have asked before names are shown; null outside a sandbox.
  ConsentAuthority* consentAuthority = nullptr;
  MainLoop& mainLoop;
  /// The widgets on this user's desktop, shown by a program that may not run.
  WidgetControl& widgetControl;
  HostStarter& hostStarter;
  /// Where the symbols, the logo and the colours are kept.
  std::filesystem::path assets;
};

}  // namespace lanternfold
