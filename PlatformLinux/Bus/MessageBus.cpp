#include "PlatformLinux/Bus/MessageBus.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "PlatformLinux/Bus/ErrorPointer.h"

namespace lanternfold {
namespace {

struct TextCloser {
  void operator()(char* text) const { g_free(text); }
};

/// On the bus, or the nearest that the bus would say.
std::string nameOf(const GError* error) {
  const std::unique_ptr<char, TextCloser> remote(g_dbus_error_get_remote_error(error));
  if (remote) return remote.get();
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE) {
    return "org.freedesktop.DBus.Error.Timeout";
  }
  // What the library says of an answer of another type.
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_INVALID_ARGUMENT) != FALSE) {
    return "org.freedesktop.DBus.Error.InvalidSignature";
  }
  return "org.freedesktop.DBus.Error.Disconnected";
}

const char* orAny(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

}  // namespace

struct MessageBus::PendingCall {
  std::shared_ptr<MessageBus> bus;
  ReplyHandler handler;
};

struct MessageBus::PendingConnection {
  std::shared_ptr<MessageBus> bus;
  std::function<void(bool)> handler;
};

MessageBus::Subscription::~Subscription() {
  if (bus_->connection_) g_dbus_connection_signal_unsubscribe(bus_->connection_.get(), number_);
}

MessageBus::MessageBus() : cancellable_(g_cancellable_new()) {}

void MessageBus::connect(const std::string& address, std::function<void(bool)> connected) {
  ++pending_;
  g_dbus_connection_new_for_address(
      address.c_str(), busClientFlags, nullptr, cancellable_.get(), takeConnection,
      new PendingConnection{.bus = shared_from_this(), .handler = std::move(connected)});
}

void MessageBus::takeConnection(GObject* /*source*/, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<PendingConnection> pending(static_cast<PendingConnection*>(data));
  MessageBus& bus = *pending->bus;
  --bus.pending_;
  std::unique_ptr<GDBusConnection, ObjectCloser> connection(
      g_dbus_connection_new_for_address_finish(result, nullptr));
  if (bus.isAbandoned_) return;
  bus.connection_ = std::move(connection);
  if (bus.connection_) {
    bus.endHandler_ = g_signal_connect(bus.connection_.get(), "closed", G_CALLBACK(takeEnd), &bus);
  }
  pending->handler(bus.connection_ != nullptr);
}

void MessageBus::takeEnd(GDBusConnection* /*connection*/, gboolean /*vanished*/, GError* /*error*/,
                         gpointer data) {
  const auto& bus = *static_cast<MessageBus*>(data);
  // A copy: the handler may close the bus.
  const auto lost = bus.lost_;
  if (lost) lost();
}

void MessageBus::close(BusThread& thread) {
  lost_ = nullptr;
  g_cancellable_cancel(cancellable_.get());
  while (pending_ > 0) thread.waitForNext();
  if (!connection_) return;
  flush(thread);
  g_signal_handler_disconnect(connection_.get(), endHandler_);
  g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
  connection_.reset();
  // The library lets go of the subscriptions' handlers a little later.
  thread.finishWhatIsDue();
}

void MessageBus::abandon() {
  isAbandoned_ = true;
  lost_ = nullptr;
  g_cancellable_cancel(cancellable_.get());
  if (!connection_) return;
  g_signal_handler_disconnect(connection_.get(), endHandler_);
  g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
  connection_.reset();
}

/// What was sent last, such as that a question is taken back, goes out before the bus is left; a
/// bus that takes nothing any more is not waited for.
void MessageBus::flush(BusThread& thread) {
  constexpr std::chrono::milliseconds limit{500};
  const std::unique_ptr<GCancellable, ObjectCloser> givingUp(g_cancellable_new());
  const BusTimer timer = thread.after(limit, [&] { g_cancellable_cancel(givingUp.get()); });
  bool isFlushed = false;
  g_dbus_connection_flush(
      connection_.get(), givingUp.get(),
      [](GObject* /*source*/, GAsyncResult* /*result*/, gpointer done) {
        *static_cast<bool*>(done) = true;
      },
      &isFlushed);
  while (!isFlushed) thread.waitForNext();
}

std::string MessageBus::uniqueName() const {
  const char* name = connection_ ? g_dbus_connection_get_unique_name(connection_.get()) : nullptr;
  return name != nullptr ? name : "";
}

void MessageBus::call(const Method& method, GVariant* arguments, const char* replyType,
                      std::chrono::milliseconds limit, ReplyHandler handler) {
  const auto timeout = std::clamp<std::chrono::milliseconds::rep>(
      limit.count(), 1, std::numeric_limits<int>::max() - 1);
  ++pending_;
  g_dbus_connection_call(connection_.get(), method.destination.c_str(), method.path.c_str(),
                         method.interface.c_str(), method.name.c_str(), arguments,
                         G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE,
                         static_cast<int>(timeout), cancellable_.get(), takeReply,
                         new PendingCall{.bus = shared_from_this(), .handler = std::move(handler)});
}

void MessageBus::takeReply(GObject* source, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<PendingCall> pending(static_cast<PendingCall*>(data));
  --pending->bus->pending_;
  GError* failure = nullptr;
  VariantPointer reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure));
  const ErrorPointer error(failure);
  if (pending->bus->isAbandoned_) return;
  if (reply) {
    pending->handler(std::move(reply));
  } else {
    pending->handler(std::unexpected(nameOf(error.get())));
  }
}

void MessageBus::send(const Method& method, GVariant* arguments) {
  if (!connection_) {
    g_variant_unref(g_variant_ref_sink(arguments));
    return;
  }
  g_dbus_connection_call(connection_.get(), method.destination.c_str(), method.path.c_str(),
                         method.interface.c_str(), method.name.c_str(), arguments, nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
}

std::unique_ptr<MessageBus::Subscription> MessageBus::subscribe(const SignalMatch& match,
                                                                SignalHandler handler) {
  const guint number = g_dbus_connection_signal_subscribe(
      connection_.get(), match.sender.c_str(), match.interface.c_str(), match.name.c_str(),
      match.path.c_str(), orAny(match.firstArgument), G_DBUS_SIGNAL_FLAGS_NONE, takeSignal,
      new SignalHandler(std::move(handler)),
      [](gpointer data) { delete static_cast<SignalHandler*>(data); });
  return std::make_unique<Subscription>(shared_from_this(), number);
}

void MessageBus::takeSignal(GDBusConnection* /*connection*/, const char* /*sender*/,
                            const char* /*path*/, const char* /*interface*/, const char* /*name*/,
                            GVariant* arguments, gpointer data) {
  // A copy: the handler may end the subscription.
  const SignalHandler handler = *static_cast<SignalHandler*>(data);
  handler(arguments);
}

}  // namespace lanternfold
