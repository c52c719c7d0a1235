// Opens the links of cards, with the system's programs or with the host's own bandwidth monitor.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <string>

#include "Platform/DiagnosticLog.h"

namespace lanternfold {

class LinkOpener {
 public:
  /// `log` outlives the opener. `openBandwidthMonitor` gets the link.
  LinkOpener(DiagnosticLog& log, std::function<void(const std::string& url)> openBandwidthMonitor)
      : log_(log), openBandwidthMonitor_(std::move(openBandwidthMonitor)) {}

  /// Any text that an extension has for a link; what is not to be opened is a line of the log.
  void open(const std::string& url);

 private:
  void handToSystem(const std::string& url);

  DiagnosticLog& log_;
  std::function<void(const std::string& url)> openBandwidthMonitor_;
};

}  // namespace lanternfold
