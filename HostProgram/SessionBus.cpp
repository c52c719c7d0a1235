#include "HostProgram/SessionBus.h"

#include <cstdlib>

#include "PlatformLinux/Bus/BusDeadline.h"
#include "PlatformLinux/Bus/ErrorPointer.h"
#include "PlatformLinux/Bus/MessageBus.h"

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

bool SessionBus::hasOwner(const std::string& name) {
  if (!connection_ || hasFallenSilent_) return false;
  GError* failure = nullptr;
  const VariantPointer reply(g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "NameHasOwner", g_variant_new("(s)", name.c_str()), G_VARIANT_TYPE("(b)"),
      G_DBUS_CALL_FLAGS_NONE, answerMilliseconds, nullptr, &failure));
  const ErrorPointer error(failure);
  hasFallenSilent_ = g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE;
  if (!reply) return false;
  gboolean isOwned = FALSE;
  g_variant_get(reply.get(), "(b)", &isOwned);
  return isOwned != FALSE;
}

}  // namespace lanternfold
