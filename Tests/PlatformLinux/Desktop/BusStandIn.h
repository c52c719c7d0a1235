// A private message bus, and somebody on it who answers as a test wants it.
#pragma once

#include <gio/gio.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace lanternfold {

/// A bus daemon of the test's own.
class PrivateBus {
 public:
  PrivateBus() : bus_(g_test_dbus_new(G_TEST_DBUS_NONE)) { g_test_dbus_up(bus_); }
  ~PrivateBus() {
    stop();
    g_object_unref(bus_);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  [[nodiscard]] std::string address() const { return g_test_dbus_get_bus_address(bus_); }
  /// Whoever is on it loses the connection.
  void stop() {
    if (std::exchange(isUp_, false)) g_test_dbus_down(bus_);
  }

 private:
  GTestDBus* bus_;
  bool isUp_ = true;
};

/// Has a name on the bus from construction to destruction. Answers on a thread of the library's.
class BusStandIn {
 public:
  BusStandIn(const std::string& busAddress, const std::string& name);
  ~BusStandIn();
  BusStandIn(const BusStandIn&) = delete;
  BusStandIn& operator=(const BusStandIn&) = delete;

  /// The calls of `method` at `path` are answered with `reply`, a floating tuple; those that were
  /// never prepared with the error that there is no such method.
  void prepare(const std::string& path, const std::string& method, GVariant* reply);
  void emit(const std::string& path, const std::string& interface, const std::string& name,
            GVariant* arguments);
  /// For objects of the product's own.
  [[nodiscard]] GDBusConnection* connection() const { return connection_; }
  /// How often `method` was called, answered or not.
  [[nodiscard]] int callsOf(const std::string& method) const;

 private:
  static GDBusMessage* take(GDBusConnection* connection, GDBusMessage* message, gboolean incoming,
                            gpointer self);

  GDBusConnection* connection_;
  mutable std::mutex mutex_;
  std::map<std::string, GVariant*> replies_;  // by path and method; guarded by mutex_
  std::map<std::string, int> calls_;          // guarded by mutex_
};

}  // namespace lanternfold
