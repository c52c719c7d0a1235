#include "PlatformLinux/Location/PortalQuestion.h"

#include <cstdint>
#include <map>
#include <utility>

namespace lanternfold {
namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";

/// A number and a dictionary, of which a location's is empty.
PortalOutcome outcomeOfSignal(sdbus::Signal& signal) {
  try {
    std::uint32_t response = 0;
    signal >> response;
    std::string type;
    std::string contents;
    signal.peekType(type, contents);
    return type == "a" && contents == "{sv}" ? outcomeOfResponse(response) : PortalOutcome::garbled;
  } catch (const sdbus::Error&) {
    return PortalOutcome::garbled;
  }
}

}  // namespace

PortalQuestion::PortalQuestion(std::shared_ptr<BusOnLoop> bus, PortalLimits limits,
                               PortalSession::OutcomeHandler ended)
    : bus_(std::move(bus)),
      limits_(limits),
      ended_(std::move(ended)),
      session_(std::make_shared<PortalSession>(bus_)),
      deadline_(bus_->loop().context()) {}

PortalQuestion::~PortalQuestion() {
  if (ended_) takeBack();
}

void PortalQuestion::begin() {
  deadline_.expires_after(limits_.answer);
  deadline_.async_wait([weak = weak_from_this()](const asio::error_code& error) {
    const auto living = weak.lock();
    if (error || !living) return;
    if (living->ended_) living->takeBack();
    living->end(PortalOutcome::silent);
  });
  // Before the portal is called: its answer may come before the call returns.
  try {
    requestPath_ = portalPath("request", bus_->connection().getUniqueName(), token_);
    listenForAnswer(requestPath_);
  } catch (const sdbus::Error& error) {
    end(outcomeOfError(error.getName()));
    return;
  }
  session_->open(limits_.reply, [weak = weak_from_this()](PortalOutcome outcome) {
    if (const auto living = weak.lock()) living->sessionIsOpen(outcome);
  });
}

void PortalQuestion::end(PortalOutcome outcome) {
  deadline_.cancel();
  if (const auto ended = std::exchange(ended_, nullptr)) ended(outcome);
}

PortalQuestion::Proxy PortalQuestion::listenTo(
    const std::string& path, const char* interface, const char* signal,
    std::function<PortalOutcome(sdbus::Signal&)> outcomeOf) {
  auto proxy = sdbus::createProxy(bus_->connection(), portalBusName, path);
  proxy->registerSignalHandler(
      interface, signal,
      [weak = weak_from_this(), outcomeOf = std::move(outcomeOf)](sdbus::Signal& message) {
        const auto living = weak.lock();
        // Before the session is open nobody was asked, and nobody else may answer for the portal.
        if (!living || message.getSender() != living->session_->owner()) return;
        living->end(outcomeOf(message));
      });
  proxy->finishRegistration();
  return proxy;
}

void PortalQuestion::listenForAnswer(const std::string& path) {
  Proxy& place = request_ ? otherRequest_ : request_;
  place = listenTo(path, requestInterface, "Response", outcomeOfSignal);
}

void PortalQuestion::sessionIsOpen(PortalOutcome outcome) {
  if (!ended_) return;
  if (outcome != PortalOutcome::offered) {
    end(outcome);
    return;
  }
  try {
    sessionEnd_ = listenTo(session_->path(), "org.freedesktop.portal.Session", "Closed",
                           [](sdbus::Signal&) { return PortalOutcome::ended; });
    start();
  } catch (const sdbus::Error& error) {
    end(outcomeOfError(error.getName()));
  }
}

void PortalQuestion::start() {
  const std::map<std::string, sdbus::Variant> options = {{"handle_token", sdbus::Variant(token_)}};
  desktop_ =
      sdbus::createProxy(bus_->connection(), session_->owner(), "/org/freedesktop/portal/desktop");
  auto call = desktop_->createMethodCall(locationInterface, "Start");
  const std::string noWindow;
  call << sdbus::ObjectPath(session_->path()) << noWindow << options;
  desktop_->callMethod(
      call,
      [weak = weak_from_this()](sdbus::MethodReply& reply, const sdbus::Error* error) {
        if (const auto living = weak.lock()) living->takeHandle(reply, error);
      },
      limits_.reply);
  bus_->pump();
}

void PortalQuestion::takeHandle(sdbus::MethodReply& reply, const sdbus::Error* error) {
  if (!ended_) return;
  if (error != nullptr) {
    end(outcomeOfError(error->getName()));
    return;
  }
  try {
    sdbus::ObjectPath path;
    reply >> path;
    if (path.empty() || path == requestPath_) return;
    requestPath_ = path;
    listenForAnswer(requestPath_);
  } catch (const sdbus::Error&) {
    end(PortalOutcome::garbled);
  }
}

void PortalQuestion::takeBack() {
  if (session_->owner().empty()) return;
  try {
    const auto request = sdbus::createProxy(bus_->connection(), session_->owner(), requestPath_);
    auto call = request->createMethodCall(requestInterface, "Close");
    call.dontExpectReply();
    request->callMethod(call);
    bus_->pump();
  } catch (const sdbus::Error&) {
    return;  // without the bus there is no dialog of ours
  }
}

}  // namespace lanternfold
