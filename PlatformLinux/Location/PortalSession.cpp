#include "PlatformLinux/Location/PortalSession.h"

#include <random>
#include <sstream>

namespace lanternfold {
namespace {

/// What it takes to be told as little as possible: whole countries, rarely and from far apart. The
/// session is closed before anything of that is told.
GVariant* coarsestOptions() {
  constexpr guint32 countryAccuracy = 1;
  constexpr guint32 distanceMetres = 1'000'000;
  constexpr guint32 timeSeconds = 86'400;
  GVariantDict options;
  g_variant_dict_init(&options, nullptr);
  g_variant_dict_insert(&options, "session_handle_token", "s", unguessableToken().c_str());
  g_variant_dict_insert(&options, "accuracy", "u", countryAccuracy);
  g_variant_dict_insert(&options, "distance-threshold", "u", distanceMetres);
  g_variant_dict_insert(&options, "time-threshold", "u", timeSeconds);
  return g_variant_new("(@a{sv})", g_variant_dict_end(&options));
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
  bus_->send({.destination = portalBusName,
              .path = path_,
              .interface = "org.freedesktop.portal.Session",
              .name = "Close"},
             g_variant_new("()"));
}

void PortalSession::open(std::chrono::milliseconds limit, OutcomeHandler opened) {
  bus_->call({.destination = portalBusName,
              .path = portalObject,
              .interface = locationInterface,
              .name = "CreateSession"},
             coarsestOptions(), "(o)", limit,
             [weak = weak_from_this(), opened = std::move(opened)](const MessageBus::Reply& reply) {
               const auto living = weak.lock();
               if (!living) return;
               if (!reply) {
                 opened(outcomeOfError(reply.error()));
                 return;
               }
               const char* path = nullptr;
               g_variant_get(reply->get(), "(&o)", &path);
               living->path_ = path;
               opened(PortalOutcome::offered);
             });
}

}  // namespace lanternfold
