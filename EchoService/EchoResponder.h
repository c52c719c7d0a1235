// What the service answers: a rule from a request and its peer to an answer.
//
// Made by: `echo-service`. Read by: the connections, each for every request.
#pragma once

#include <vector>

#include "EchoService/GeolocationTable.h"
#include "EchoService/HttpRequest.h"
#include "EchoService/HttpResponse.h"
#include "EchoService/IpNetwork.h"

namespace lanternfold {

/// Holds no state beyond what it is made of; any thread.
class EchoResponder {
 public:
  EchoResponder(GeolocationTable table, std::vector<IpNetwork> trustedPeers);

  /// `peer` is who the connection comes from.
  [[nodiscard]] HttpResponse respond(const HttpRequest& request, const IpAddress& peer) const;

 private:
  [[nodiscard]] HttpResponse addressAnswer(const HttpRequest& request, const IpAddress& peer) const;
  [[nodiscard]] HttpResponse geolocationAnswer(const HttpRequest& request,
                                               const IpAddress& peer) const;

  GeolocationTable table_;
  std::vector<IpNetwork> trustedPeers_;
};

}  // namespace lanternfold
