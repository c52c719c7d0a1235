#include "EchoService/EchoResponder.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "EchoService/ForwardedClient.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

HttpResponse answer(const Json& object) { return {.status = 200, .body = object.dump()}; }

HttpResponse answer(const HttpRequestError& error) {
  return errorResponse(error.status, error.sentence);
}

}  // namespace

EchoResponder::EchoResponder(GeolocationTable table, std::vector<IpNetwork> trustedPeers)
    : table_(std::move(table)), trustedPeers_(std::move(trustedPeers)) {}

HttpResponse EchoResponder::respond(const HttpRequest& request, const IpAddress& peer) const {
  if (request.method != "GET" && request.method != "HEAD") {
    return errorResponse(405, "this service answers GET and HEAD");
  }
  if (request.path == "/lanternfold/ip.php") return addressAnswer(request, peer);
  if (request.path == "/json/") return geolocationAnswer(request, peer);
  if (request.path == "/lanternfold/sentinel.php") return answer(Json{{"status", "ok"}});
  return errorResponse(404, "there is nothing at this path");
}

HttpResponse EchoResponder::addressAnswer(const HttpRequest& request, const IpAddress& peer) const {
  const auto client = forwardedClient(peer, request.fields, trustedPeers_);
  if (!client) return answer(client.error());
  return answer(Json{{"ip", ipAddressText(*client)}});
}

HttpResponse EchoResponder::geolocationAnswer(const HttpRequest& request,
                                              const IpAddress& peer) const {
  if (request.query && request.query != "fields=isp,query,countryCode,as") {
    return errorResponse(400, "this service has the fields isp,query,countryCode,as and no others");
  }
  const auto client = forwardedClient(peer, request.fields, trustedPeers_);
  if (!client) return answer(client.error());
  // Empty texts where nothing is known: whoever asks needs the address all the same.
  const GeolocationEntry entry = table_.find(*client).value_or(GeolocationEntry{});
  return answer(Json{{"isp", entry.isp},
                     {"query", ipAddressText(*client)},
                     {"countryCode", entry.countryCode},
                     {"as", entry.as}});
}

}  // namespace lanternfold
