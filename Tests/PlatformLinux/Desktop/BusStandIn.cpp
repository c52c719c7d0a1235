#include "Tests/PlatformLinux/Desktop/BusStandIn.h"

#include <gtest/gtest.h>

#include "PlatformLinux/Bus/MessageBus.h"

namespace lanternfold {

BusStandIn::BusStandIn(const std::string& busAddress, const std::string& name)
    : connection_(g_dbus_connection_new_for_address_sync(busAddress.c_str(), busClientFlags,
                                                         nullptr, nullptr, nullptr)) {
  g_dbus_connection_add_filter(connection_, take, this, nullptr);
  GVariant* const owned =
      g_dbus_connection_call_sync(connection_, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                  "RequestName", g_variant_new("(su)", name.c_str(), 0U), nullptr,
                                  G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  EXPECT_NE(owned, nullptr);
  if (owned != nullptr) g_variant_unref(owned);
}

BusStandIn::~BusStandIn() {
  // The library's thread may be in the filter until then.
  g_dbus_connection_close_sync(connection_, nullptr, nullptr);
  g_object_unref(connection_);
  for (const auto& [method, reply] : replies_) g_variant_unref(reply);
}

void BusStandIn::prepare(const std::string& path, const std::string& method, GVariant* reply) {
  const std::lock_guard lock(mutex_);
  GVariant*& kept = replies_[path + " " + method];
  if (kept != nullptr) g_variant_unref(kept);
  kept = g_variant_ref_sink(reply);
}

void BusStandIn::emit(const std::string& path, const std::string& interface,
                      const std::string& name, GVariant* arguments) {
  g_dbus_connection_emit_signal(connection_, nullptr, path.c_str(), interface.c_str(), name.c_str(),
                                arguments, nullptr);
  g_dbus_connection_flush_sync(connection_, nullptr, nullptr);
}

int BusStandIn::callsOf(const std::string& method) const {
  const std::lock_guard lock(mutex_);
  const auto found = calls_.find(method);
  return found == calls_.end() ? 0 : found->second;
}

GDBusMessage* BusStandIn::take(GDBusConnection* connection, GDBusMessage* message,
                               gboolean incoming, gpointer self) {
  if (incoming == FALSE ||
      g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) {
    return message;
  }
  auto& own = *static_cast<BusStandIn*>(self);
  const std::string method = g_dbus_message_get_member(message);
  const std::lock_guard lock(own.mutex_);
  ++own.calls_[method];
  const auto prepared = own.replies_.find(g_dbus_message_get_path(message) + (" " + method));
  if (prepared == own.replies_.end()) return message;
  GDBusMessage* const reply = g_dbus_message_new_method_reply(message);
  g_dbus_message_set_body(reply, prepared->second);
  g_dbus_connection_send_message(connection, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                 nullptr);
  g_object_unref(reply);
  g_object_unref(message);
  return nullptr;
}

}  // namespace lanternfold
