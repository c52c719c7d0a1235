// A datagram of the kernel's reports: whether they are news must not depend on being asked twice,
// and a report that cannot be decoded is news.
#include "PlatformLinux/Path/PathEvents.h"

#include <cstddef>
#include <cstdint>

#include <linux/rtnetlink.h>

#include "Support/FatalError.h"

namespace {

/// The snapshot with what the message says taken in.
void takeIn(const lanternfold::NetlinkMessage& message, lanternfold::NetworkSnapshot& known) {
  if (const auto link = lanternfold::decodeLinkMessage(message);
      link && link->describesLink() && !link->isRemoval) {
    known.links.insert_or_assign(
        link->index, lanternfold::SnapshotLink{.link = lanternfold::withoutCounters(*link)});
    if (lanternfold::isNews(message, known)) {
      lanternfold::fatalError("a link that is known as reported is news");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetworkSnapshot known;
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    const bool isLink = (*message)->type == RTM_NEWLINK || (*message)->type == RTM_DELLINK;
    const bool isNews = lanternfold::isNews(**message, known);
    if (isLink && !isNews && !lanternfold::decodeLinkMessage(**message)) {
      lanternfold::fatalError("a report that cannot be decoded is no news");
    }
    takeIn(**message, known);
  }
}
