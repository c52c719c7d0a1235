#include "PlatformLinux/Desktop/BusWidgetControl.h"

#include <gio/gio.h>
#include <memory>
#include <utility>

#include "PlatformLinux/Bus/BusDeadline.h"
#include "PlatformLinux/Bus/ErrorPointer.h"
#include "PlatformLinux/Bus/MessageBus.h"
#include "PlatformLinux/Desktop/WidgetControlNames.h"

namespace lanternfold {
namespace {

using Cause = WidgetControlFailure::Cause;
using Answer = WidgetControl::Outcome<VariantPointer>;

using ConnectionPointer = std::unique_ptr<GDBusConnection, ObjectCloser>;

std::unexpected<WidgetControlFailure> failed(Cause cause, std::string sentence) {
  return std::unexpected(WidgetControlFailure{.cause = cause, .sentence = std::move(sentence)});
}

std::unexpected<WidgetControlFailure> noSessionBus() {
  return failed(Cause::unreachable,
                "the widgets are reached over the session bus, and there is none; run this inside "
                "of the session that shows them");
}

std::unexpected<WidgetControlFailure> noAnswer() {
  return failed(Cause::unreachable,
                "the program that shows the widgets does not answer; try again, or end it and "
                "start it anew with \"lanternfold-widgets show\"");
}

ConnectionPointer connected(const std::string& address, const BusDeadline& deadline) {
  return ConnectionPointer(g_dbus_connection_new_for_address_sync(
      address.c_str(), busClientFlags, nullptr, deadline.cancellable(), nullptr));
}

std::unexpected<WidgetControlFailure> failureOf(ErrorPointer error) {
  const std::unique_ptr<char, decltype(&g_free)> remote(g_dbus_error_get_remote_error(error.get()),
                                                        &g_free);
  const std::string name = remote ? remote.get() : "";
  if (name == widgetControlRefusal) {
    g_dbus_error_strip_remote_error(error.get());
    return failed(Cause::refused, error->message);
  }
  if (name == "org.freedesktop.DBus.Error.ServiceUnknown" ||
      name == "org.freedesktop.DBus.Error.NameHasNoOwner") {
    return failed(Cause::noHost,
                  "no widgets are shown; start them with \"lanternfold-widgets show\"");
  }
  if (name.empty() &&
      g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_INVALID_ARGUMENT) == FALSE) {
    return noAnswer();
  }
  if (name == "org.freedesktop.DBus.Error.NoReply") return noAnswer();
  return failed(Cause::unreachable,
                "the program that shows the widgets is of another version; end it and start it "
                "anew with \"lanternfold-widgets show\"");
}

/// A bus carries UTF-8 alone; a name that is none is no name of a widget.
std::string busText(const std::string& text) {
  const std::unique_ptr<char, decltype(&g_free)> valid(
      g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), &g_free);
  return valid.get();
}

/// `arguments` is a floating tuple.
Answer call(const std::optional<std::string>& address, std::chrono::milliseconds limit,
            const char* method, GVariant* arguments, const char* replyType) {
  const VariantPointer kept(g_variant_ref_sink(arguments));
  if (!address) return noSessionBus();
  const BusDeadline deadline(limit);
  const ConnectionPointer connection = connected(*address, deadline);
  if (!connection) {
    if (deadline.isOver()) return noAnswer();
    return noSessionBus();
  }
  GError* failure = nullptr;
  VariantPointer reply(g_dbus_connection_call_sync(
      connection.get(), widgetHostBusName, widgetHostObject, widgetControlInterface, method,
      kept.get(), G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NO_AUTO_START,
      static_cast<int>(limit.count()), deadline.cancellable(), &failure));
  if (!reply) return failureOf(ErrorPointer(failure));
  return reply;
}

WidgetControl::Outcome<std::string> textIn(const Answer& answer) {
  if (!answer) return std::unexpected(answer.error());
  const char* text = nullptr;
  g_variant_get(answer->get(), "(&s)", &text);
  return text;
}

WidgetControl::Outcome<void> doneIn(const Answer& answer) {
  if (!answer) return std::unexpected(answer.error());
  return {};
}

}  // namespace

BusWidgetControl::BusWidgetControl(std::optional<std::string> busAddress,
                                   std::chrono::milliseconds limit)
    : busAddress_(std::move(busAddress)), limit_(limit) {}

WidgetControl::Outcome<std::string> BusWidgetControl::list() {
  return textIn(call(busAddress_, limit_, "List", g_variant_new("()"), "(s)"));
}

WidgetControl::Outcome<std::string> BusWidgetControl::add(const std::string& kind,
                                                          const std::string& family,
                                                          const std::string& adapter) {
  return textIn(call(busAddress_, limit_, "Add",
                     g_variant_new("(sss)", busText(kind).c_str(), busText(family).c_str(),
                                   busText(adapter).c_str()),
                     "(s)"));
}

WidgetControl::Outcome<void> BusWidgetControl::remove(const std::string& id) {
  return doneIn(
      call(busAddress_, limit_, "Remove", g_variant_new("(s)", busText(id).c_str()), "()"));
}

WidgetControl::Outcome<void> BusWidgetControl::reload(const std::string& id) {
  return doneIn(
      call(busAddress_, limit_, "Reload", g_variant_new("(s)", busText(id).c_str()), "()"));
}

WidgetControl::Outcome<void> BusWidgetControl::quit() {
  return doneIn(call(busAddress_, limit_, "Quit", g_variant_new("()"), "()"));
}

}  // namespace lanternfold
