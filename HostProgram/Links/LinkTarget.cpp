#include "HostProgram/Links/LinkTarget.h"

#include "WidgetHost/Links/LinkPolicy.h"

namespace lanternfold {

LinkTarget linkTarget(std::string_view url, std::string_view handler) {
  switch (linkVerdict(url)) {
    case LinkVerdict::refused:
      return LinkTarget::nothing;
    case LinkVerdict::webPage:
      return LinkTarget::system;
    case LinkVerdict::deepLink:
      break;
  }
  if (!handler.empty() && handler != ownDesktopFile) return LinkTarget::system;
  return isBandwidthMonitorLink(url) ? LinkTarget::ownBandwidthMonitor : LinkTarget::nothing;
}

}  // namespace lanternfold
