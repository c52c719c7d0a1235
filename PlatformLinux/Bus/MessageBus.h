// A connection to a message bus: calls with their answers, and signals.
//
// Made by: whoever converses with services of the desktop or of the system. Internal to this room:
// it brings in GLib, whose handshake the filter before a sandbox's bus understands (that of 0.1.4
// breaks off with clients that send theirs in one piece, as libsystemd's do).
#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <gio/gio.h>
#include <memory>
#include <string>

#include "PlatformLinux/Bus/BusThread.h"

namespace lanternfold {

struct VariantCloser {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantPointer = std::unique_ptr<GVariant, VariantCloser>;

struct ObjectCloser {
  void operator()(gpointer object) const { g_object_unref(object); }
};

/// A connection to a bus, and not to a single peer.
inline constexpr auto busClientFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

/// Everything on one thread: that of a `BusThread`, or the main thread of a program whose main loop
/// is GLib's. Handlers run there too, from that loop, never inside of a call.
class MessageBus : public std::enable_shared_from_this<MessageBus> {
 public:
  struct Method {
    std::string destination;
    std::string path;
    std::string interface;
    std::string name;
  };
  struct SignalMatch {
    std::string sender;  ///< a name on the bus; only its owner is heard
    std::string path;
    std::string interface;
    std::string name;
    std::string firstArgument;  ///< empty for any
  };
  /// A tuple of the type that was asked for, or an error's name on the bus; what went wrong on this
  /// side has such a name too.
  using Reply = std::expected<VariantPointer, std::string>;
  using ReplyHandler = std::function<void(Reply)>;
  using SignalHandler = std::function<void(GVariant* arguments)>;

  /// Heard of from construction to destruction.
  class Subscription {
   public:
    Subscription(std::shared_ptr<MessageBus> bus, guint number)
        : bus_(std::move(bus)), number_(number) {}
    ~Subscription();
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

   private:
    const std::shared_ptr<MessageBus> bus_;
    const guint number_;
  };

  MessageBus();
  /// Closed or abandoned before.
  ~MessageBus() = default;
  MessageBus(const MessageBus&) = delete;
  MessageBus& operator=(const MessageBus&) = delete;

  /// Once. `connected` hears whether that succeeded; it may never.
  void connect(const std::string& address, std::function<void(bool)> connected);
  /// `lost` is called when the bus goes away.
  void setLostHandler(std::function<void()> lost) { lost_ = std::move(lost); }
  /// Ends every call, whose handlers hear of it before the return, and leaves the bus. On `thread`,
  /// whose loop is run meanwhile.
  void close(BusThread& thread);
  /// Leaves the bus without waiting for anything. No handler is called any more.
  void abandon();

  /// The name that the bus has given this connection.
  [[nodiscard]] std::string uniqueName() const;

  /// `arguments` is a floating tuple.
  void call(const Method& method, GVariant* arguments, const char* replyType,
            std::chrono::milliseconds limit, ReplyHandler handler);
  /// Nobody waits for an answer.
  void send(const Method& method, GVariant* arguments);
  [[nodiscard]] std::unique_ptr<Subscription> subscribe(const SignalMatch& match,
                                                        SignalHandler handler);

 private:
  struct PendingCall;
  struct PendingConnection;

  void flush(BusThread& thread);
  static void takeConnection(GObject* source, GAsyncResult* result, gpointer data);
  static void takeReply(GObject* source, GAsyncResult* result, gpointer data);
  static void takeSignal(GDBusConnection* connection, const char* sender, const char* path,
                         const char* interface, const char* name, GVariant* arguments,
                         gpointer data);
  static void takeEnd(GDBusConnection* connection, gboolean vanished, GError* error, gpointer data);

  std::function<void()> lost_;
  const std::unique_ptr<GCancellable, ObjectCloser> cancellable_;
  std::unique_ptr<GDBusConnection, ObjectCloser> connection_;
  gulong endHandler_ = 0;
  int pending_ = 0;  ///< of what is under way
  bool isAbandoned_ = false;
};

}  // namespace lanternfold
