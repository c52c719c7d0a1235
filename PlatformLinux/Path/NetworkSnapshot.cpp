#include "PlatformLinux/Path/NetworkSnapshot.h"

#include <utility>

namespace lanternfold {

LinkMessage withoutCounters(LinkMessage link) {
  link.counters32.reset();
  link.counters64.reset();
  return link;
}

}  // namespace lanternfold
