#include "PlatformLinux/Desktop/SessionSearch.h"

#include <string_view>
#include <unistd.h>
#include <utility>

#include "PlatformLinux/Desktop/LogindNames.h"

namespace lanternfold {
namespace {

constexpr std::chrono::seconds replyLimit{25};
/// What the login manager has in the place of a session that there is not.
constexpr std::string_view noObject = "/";

}  // namespace

SessionSearch::SessionSearch(std::shared_ptr<MessageBus> bus, std::string sessionId,
                             std::function<void(const std::string&)> found)
    : bus_(std::move(bus)), sessionId_(std::move(sessionId)), found_(std::move(found)) {}

void SessionSearch::begin() {
  if (sessionId_.empty()) {
    askByProcess();
  } else {
    askById();
  }
}

void SessionSearch::askById() {
  askManager("GetSession", g_variant_new("(s)", sessionId_.c_str()),
             [this](const MessageBus::Reply& reply) { take(reply, &SessionSearch::askByProcess); });
}

void SessionSearch::askByProcess() {
  askManager("GetSessionByPID", g_variant_new("(u)", static_cast<guint32>(::getpid())),
             [this](const MessageBus::Reply& reply) { take(reply, &SessionSearch::askForUser); });
}

void SessionSearch::askForUser() {
  askManager("GetUser", g_variant_new("(u)", static_cast<guint32>(::getuid())),
             [this](const MessageBus::Reply& reply) {
               if (!reply) return;
               const char* path = nullptr;
               g_variant_get(reply->get(), "(&o)", &path);
               askForDisplay(path);
             });
}

void SessionSearch::askForDisplay(const std::string& userPath) {
  bus_->call({.destination = logindName,
              .path = userPath,
              .interface = propertiesInterface,
              .name = "Get"},
             g_variant_new("(ss)", logindUser, "Display"), "(v)", replyLimit,
             [weak = weak_from_this()](const MessageBus::Reply& reply) {
               const auto living = weak.lock();
               if (!living || !reply) return;
               GVariant* boxed = nullptr;
               g_variant_get(reply->get(), "(v)", &boxed);
               const VariantPointer display(boxed);
               if (g_variant_is_of_type(boxed, G_VARIANT_TYPE("(so)")) == FALSE) return;
               const char* path = nullptr;
               g_variant_get_child(boxed, 1, "&o", &path);
               if (path != noObject) living->found_(path);
             });
}

void SessionSearch::askManager(const char* method, GVariant* arguments,
                               std::function<void(const MessageBus::Reply&)> handler) {
  bus_->call(
      {.destination = logindName, .path = logindObject, .interface = logindManager, .name = method},
      arguments, "(o)", replyLimit,
      [weak = weak_from_this(), handler = std::move(handler)](const MessageBus::Reply& reply) {
        if (const auto living = weak.lock()) handler(reply);
      });
}

void SessionSearch::take(const MessageBus::Reply& reply, Step next) {
  if (!reply) {
    (this->*next)();
    return;
  }
  const char* path = nullptr;
  g_variant_get(reply->get(), "(&o)", &path);
  found_(path);
}

}  // namespace lanternfold
