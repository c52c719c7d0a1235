#include "PlatformLinux/Location/PortalSession.h"

#include <cstdint>
#include <map>
#include <random>
#include <sstream>

namespace lanternfold {
namespace {

/// What it takes to be told as little as possible: whole countries, rarely and from far apart. The
/// session is closed before anything of that is told.
std::map<std::string, sdbus::Variant> coarsestOptions() {
  constexpr std::uint32_t countryAccuracy = 1;
  constexpr std::uint32_t distanceMetres = 1'000'000;
  constexpr std::uint32_t timeSeconds = 86'400;
  return {{"session_handle_token", sdbus::Variant(unguessableToken())},
          {"accuracy", sdbus::Variant(countryAccuracy)},
          {"distance-threshold", sdbus::Variant(distanceMetres)},
          {"time-threshold", sdbus::Variant(timeSeconds)}};
}

}  // namespace

std::string unguessableToken() {
  std::random_device random;
  std::ostringstream token;
  token << "lanternfold" << std::hex;
  for (int part = 0; part < 4; ++part) token << '_' << random();
  return token.str();
}

PortalSession::~PortalSession() {
  if (path_.empty()) return;
  try {
    const auto session = sdbus::createProxy(bus_->connection(), owner_, path_);
    auto call = session->createMethodCall("org.freedesktop.portal.Session", "Close");
    call.dontExpectReply();
    session->callMethod(call);
    bus_->pump();
  } catch (const sdbus::Error&) {
    return;  // without the bus, or without the portal, the session is gone too
  }
}

void PortalSession::open(std::chrono::milliseconds limit, OutcomeHandler opened) {
  try {
    desktop_ =
        sdbus::createProxy(bus_->connection(), portalBusName, "/org/freedesktop/portal/desktop");
    auto call = desktop_->createMethodCall(locationInterface, "CreateSession");
    call << coarsestOptions();
    desktop_->callMethod(
        call,
        [weak = weak_from_this(), opened](sdbus::MethodReply& reply, const sdbus::Error* error) {
          if (const auto living = weak.lock()) opened(living->take(reply, error));
        },
        limit);
  } catch (const sdbus::Error& error) {
    opened(outcomeOfError(error.getName()));
    return;
  }
  bus_->pump();
}

PortalOutcome PortalSession::take(sdbus::MethodReply& reply, const sdbus::Error* error) {
  if (error != nullptr) return outcomeOfError(error->getName());
  try {
    sdbus::ObjectPath path;
    reply >> path;
    owner_ = reply.getSender();
    path_ = path;
  } catch (const sdbus::Error&) {
    return PortalOutcome::garbled;
  }
  return path_.empty() ? PortalOutcome::garbled : PortalOutcome::offered;
}

}  // namespace lanternfold
