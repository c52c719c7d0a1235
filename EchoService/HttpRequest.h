// A request without a body, as one connection of HTTP/1.0 or HTTP/1.1 brings it.
//
// Made by: `parseHttpRequest`. Read by: `EchoResponder` and the connections.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lanternfold {

struct HttpHeaderField {
  std::string name;   ///< lower case
  std::string value;  ///< without the white space around it
  friend bool operator==(const HttpHeaderField&, const HttpHeaderField&) = default;
};

struct HttpRequest {
  std::string method;                   ///< in the letters that were sent; "GET" is not "get"
  std::string path;                     ///< as sent, percent signs included; "*" of "OPTIONS *"
  std::optional<std::string> query;     ///< what stands behind the first "?"
  std::vector<HttpHeaderField> fields;  ///< in their order
  bool keepAlive = false;               ///< whether the client would go on with this connection
  friend bool operator==(const HttpRequest&, const HttpRequest&) = default;
};

/// Why a request is refused; the connection ends with the answer.
struct HttpRequestError {
  int status = 400;      ///< what it is answered with
  const char* sentence;  ///< one sentence for whoever sent it, without a full stop
};

}  // namespace lanternfold
