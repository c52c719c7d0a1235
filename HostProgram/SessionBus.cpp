#include "HostProgram/SessionBus.h"

#include <cstdlib>

#include "PlatformLinux/Bus/BusDeadline.h"

namespace lanternfold {
namespace {

constexpr int answerMilliseconds = 3000;

}  // namespace

SessionBus::SessionBus(std::chrono::milliseconds limit) {
  const BusDeadline deadline(limit);
  connection_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), nullptr));
  if (connection_) {
    g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
  } else if (deadline.isOver()) {
    isSilent_ = true;
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", /*overwrite=*/1);
  }
}

bool SessionBus::hasOwner(const std::string& name) const {
  if (!connection_) return false;
  GVariant* const reply = g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "NameHasOwner", g_variant_new("(s)", name.c_str()), G_VARIANT_TYPE("(b)"),
      G_DBUS_CALL_FLAGS_NONE, answerMilliseconds, nullptr, nullptr);
  if (reply == nullptr) return false;
  gboolean isOwned = FALSE;
  g_variant_get(reply, "(b)", &isOwned);
  g_variant_unref(reply);
  return isOwned != FALSE;
}

}  // namespace lanternfold
