// An answer with a JSON body, and its bytes.
//
// Made by: `EchoResponder` and the connections. Read by: the connections, which send it.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace lanternfold {

struct HttpResponse {
  int status = 200;
  std::string body;  ///< JSON
  friend bool operator==(const HttpResponse&, const HttpResponse&) = default;
};

/// `{"error":"SENTENCE"}`.
[[nodiscard]] HttpResponse errorResponse(int status, std::string_view sentence);

enum class HttpBody { sent, leftOut };  ///< left out as the answer to a HEAD
enum class AfterResponse { keepAlive, close };

/// The whole answer. `now` is for its date.
[[nodiscard]] std::string encodeHttpResponse(const HttpResponse& response, HttpBody body,
                                             AfterResponse after,
                                             std::chrono::system_clock::time_point now);

/// "Sun, 06 Nov 1994 08:49:37 GMT", in every locale.
[[nodiscard]] std::string httpDateText(std::chrono::system_clock::time_point moment);

}  // namespace lanternfold
