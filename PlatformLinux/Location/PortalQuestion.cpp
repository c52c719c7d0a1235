#include "PlatformLinux/Location/PortalQuestion.h"

#include <utility>

namespace lanternfold {
namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";

/// A number and a dictionary, of which a location's is empty.
PortalOutcome outcomeOfSignal(GVariant* arguments) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})")) == FALSE) {
    return PortalOutcome::garbled;
  }
  guint32 response = 0;
  g_variant_get_child(arguments, 0, "u", &response);
  return outcomeOfResponse(response);
}

}  // namespace

PortalQuestion::PortalQuestion(BusThread& thread, std::shared_ptr<MessageBus> bus,
                               PortalLimits limits, PortalSession::OutcomeHandler ended)
    : thread_(thread),
      bus_(std::move(bus)),
      limits_(limits),
      ended_(std::move(ended)),
      session_(std::make_shared<PortalSession>(bus_)) {}

PortalQuestion::~PortalQuestion() {
  if (ended_) takeBack();
}

void PortalQuestion::begin() {
  deadline_ = thread_.after(limits_.answer, [weak = weak_from_this()] {
    const auto living = weak.lock();
    if (!living) return;
    if (living->ended_) living->takeBack();
    living->end(PortalOutcome::silent);
  });
  // Before the portal is called: its answer may come before the call returns.
  requestPath_ = portalPath("request", bus_->uniqueName(), token_);
  listenForAnswer(requestPath_);
  session_->open(limits_.reply, [weak = weak_from_this()](PortalOutcome outcome) {
    if (const auto living = weak.lock()) living->sessionIsOpen(outcome);
  });
}

/// The session goes at once: it is consent that was asked for, not coordinates.
void PortalQuestion::end(PortalOutcome outcome) {
  deadline_.reset();
  subscriptions_.clear();
  session_.reset();
  if (const auto ended = std::exchange(ended_, nullptr)) ended(outcome);
}

void PortalQuestion::listenForAnswer(const std::string& path) {
  subscriptions_.push_back(bus_->subscribe({.sender = portalBusName,
                                            .path = path,
                                            .interface = requestInterface,
                                            .name = "Response",
                                            .firstArgument = {}},
                                           [weak = weak_from_this()](GVariant* arguments) {
                                             const auto living = weak.lock();
                                             if (living) living->end(outcomeOfSignal(arguments));
                                           }));
}

void PortalQuestion::listenForEnd(const std::string& path) {
  subscriptions_.push_back(bus_->subscribe({.sender = portalBusName,
                                            .path = path,
                                            .interface = "org.freedesktop.portal.Session",
                                            .name = "Closed",
                                            .firstArgument = {}},
                                           [weak = weak_from_this()](GVariant* /*details*/) {
                                             const auto living = weak.lock();
                                             if (living) living->end(PortalOutcome::ended);
                                           }));
}

void PortalQuestion::sessionIsOpen(PortalOutcome outcome) {
  if (!ended_) return;
  if (outcome != PortalOutcome::offered) {
    end(outcome);
    return;
  }
  listenForEnd(session_->path());
  start();
}

void PortalQuestion::start() {
  GVariantDict options;
  g_variant_dict_init(&options, nullptr);
  g_variant_dict_insert(&options, "handle_token", "s", token_.c_str());
  constexpr const char* noWindow = "";
  bus_->call(
      {.destination = portalBusName,
       .path = portalObject,
       .interface = locationInterface,
       .name = "Start"},
      g_variant_new("(os@a{sv})", session_->path().c_str(), noWindow, g_variant_dict_end(&options)),
      "(o)", limits_.reply, [weak = weak_from_this()](const MessageBus::Reply& reply) {
        if (const auto living = weak.lock()) living->takeHandle(reply);
      });
}

/// Portals before version 0.9 choose the request's path themselves.
void PortalQuestion::takeHandle(const MessageBus::Reply& reply) {
  if (!ended_) return;
  if (!reply) {
    end(outcomeOfError(reply.error()));
    return;
  }
  const char* path = nullptr;
  g_variant_get(reply->get(), "(&o)", &path);
  if (path == requestPath_) return;
  requestPath_ = path;
  listenForAnswer(requestPath_);
}

void PortalQuestion::takeBack() {
  if (!session_ || session_->path().empty()) return;
  bus_->send({.destination = portalBusName,
              .path = requestPath_,
              .interface = requestInterface,
              .name = "Close"},
             g_variant_new("()"));
}

}  // namespace lanternfold
