// Opens the links of cards and those from outside, with the system's programs or with the host's
// own bandwidth monitor.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "HostProgram/HostEnvironment.h"
#include "HostProgram/Links/LinkTarget.h"
#include "Platform/DiagnosticLog.h"

namespace lanternfold {

class LinkOpener {
 public:
  /// `log` outlives the opener. The system's programs get `givenVariables` as they stand there.
  /// `openBandwidthMonitor` gets the link.
  LinkOpener(DiagnosticLog& log, std::vector<GivenVariable> givenVariables,
             std::function<void(const std::string& url)> openBandwidthMonitor)
      : log_(log),
        givenVariables_(std::move(givenVariables)),
        openBandwidthMonitor_(std::move(openBandwidthMonitor)) {}

  /// Any text that an extension has for a link; what is not to be opened is a line of the log.
  void open(const std::string& url);
  /// Any text that came over the bus or on the command line: as above, but nothing of it is handed
  /// on to the system.
  void openFromOutside(const std::string& url);

 private:
  void follow(LinkTarget target, const std::string& url);
  void handToSystem(const std::string& url);

  DiagnosticLog& log_;
  std::vector<GivenVariable> givenVariables_;
  std::function<void(const std::string& url)> openBandwidthMonitor_;
};

}  // namespace lanternfold
