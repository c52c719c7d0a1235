#include "PlatformLinux/Netlink/InterfaceName.h"

#include <algorithm>
#include <glib.h>
#include <net/if.h>

namespace lanternfold {

namespace {

bool isBlankOrControl(gunichar point) { return point <= 0x20 || (point >= 0x7F && point <= 0xA0); }

}  // namespace

bool isKernelInterfaceName(std::string_view name) {
  return !name.empty() && name.size() < IFNAMSIZ && name != "." && name != ".." &&
         std::ranges::none_of(
             name,
             [](char byte) {
               return static_cast<unsigned char>(byte) <= ' ' || byte == '/' || byte == 0x7F;
             });
}

bool isTrustworthyInterfaceName(std::string_view name) {
  if (!isKernelInterfaceName(name) || name.contains(':')) return false;
  const auto size = static_cast<gssize>(name.size());
  if (g_utf8_validate(name.data(), size, nullptr) == FALSE) return false;
  const char* const end = name.data() + name.size();
  for (const char* at = name.data(); at != end; at = g_utf8_next_char(at)) {
    if (isBlankOrControl(g_utf8_get_char(at))) return false;
  }
  return true;
}

}  // namespace lanternfold
