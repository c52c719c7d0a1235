#include "HostProgram/SessionBus.h"

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <stop_token>
#include <thread>

namespace lanternfold {
namespace {

constexpr int answerMilliseconds = 3000;

struct ReleaseObject {
  void operator()(gpointer object) const { g_object_unref(object); }
};

/// Cancels what the thread that has made it is waiting for, unless it is destroyed before.
class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds limit)
      : thread_([this, limit](const std::stop_token& stop) {
          std::mutex mutex;
          std::unique_lock lock(mutex);
          (void)std::condition_variable_any().wait_for(lock, stop, limit, [] { return false; });
          if (!stop.stop_requested()) g_cancellable_cancel(cancellable_.get());
        }) {}

  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

 private:
  std::unique_ptr<GCancellable, ReleaseObject> cancellable_{g_cancellable_new()};
  std::jthread thread_;
};

}  // namespace

SessionBus::SessionBus(std::chrono::milliseconds limit) {
  const Deadline deadline(limit);
  connection_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), nullptr));
  if (connection_) {
    g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
  } else if (g_cancellable_is_cancelled(deadline.cancellable()) != FALSE) {
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
