#include "HostProgram/Links/LinkTarget.h"

#include "WidgetHost/Links/LinkPolicy.h"

namespace lanternfold {

bool isThisProgram(const LinkHandler& handler, const std::filesystem::path& ownProgram) {
  return handler.desktopFile == ownDesktopFile ||
         (!handler.program.empty() && handler.program == ownProgram);
}

LinkTarget linkTarget(std::string_view url, bool isHandledElsewhere) {
  switch (linkVerdict(url)) {
    case LinkVerdict::refused:
      return LinkTarget::nothing;
    case LinkVerdict::webPage:
      return LinkTarget::system;
    case LinkVerdict::deepLink:
      break;
  }
  return isHandledElsewhere ? LinkTarget::system : linkTargetFromOutside(url);
}

LinkTarget linkTargetFromOutside(std::string_view url) {
  return isBandwidthMonitorLink(url) ? LinkTarget::ownBandwidthMonitor : LinkTarget::nothing;
}

}  // namespace lanternfold
