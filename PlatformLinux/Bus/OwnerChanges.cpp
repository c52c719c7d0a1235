#include "PlatformLinux/Bus/OwnerChanges.h"

namespace lanternfold {

std::string newOwnerIn(GVariant* arguments) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(sss)")) == FALSE) return {};
  const char* owner = nullptr;
  g_variant_get_child(arguments, 2, "&s", &owner);
  return owner;
}

MessageBus::SignalMatch ownerChangesOf(const std::string& name) {
  return {.sender = "org.freedesktop.DBus",
          .path = "/org/freedesktop/DBus",
          .interface = "org.freedesktop.DBus",
          .name = "NameOwnerChanged",
          .firstArgument = name};
}

}  // namespace lanternfold
