// A datagram of generic netlink's reports, as somebody who listens to nl80211 takes them: the
// family may come and go among them.
#include "PlatformLinux/Wifi/WifiEvents.h"

#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/GenericFamilyWatch.h"
#include "Support/FatalError.h"

namespace {

using lanternfold::fatalError;
using lanternfold::GenericEvent;
using lanternfold::GenericFamilyWatch;

void check(const GenericFamilyWatch::Verdict& verdict, const lanternfold::NetlinkMessage& message) {
  if (verdict.event != GenericEvent::came && !verdict.groups.empty()) {
    fatalError("groups are to be joined of a family that has not come");
  }
  if (verdict.groups.size() > 32) fatalError("a family has more groups than its decoder reads");
  const bool isAboutFamilies = message.type == GENL_ID_CTRL;
  if (isAboutFamilies && verdict.event == GenericEvent::ofFamily) {
    fatalError("a report about families was taken for the family's own");
  }
  if (isAboutFamilies && !lanternfold::genericCommand(message) &&
      verdict.event != GenericEvent::unclear) {
    fatalError("a report about families that cannot be decoded is ignored");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  GenericFamilyWatch watch(lanternfold::wifiFamilyName, lanternfold::wifiCellGroups());
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    const auto verdict = watch.take(**message);
    check(verdict, **message);
    if (watch.take(**message) != verdict) fatalError("a report taken twice means two things");
    const auto news = lanternfold::newsOfWifiEvent(**message);
    if (!lanternfold::genericCommand(**message) && news != lanternfold::WifiNews::state) {
      fatalError("a report that cannot be decoded is no news");
    }
  }
}
