// The seam to HTTP: sessions that keep nothing and fetch the answer of one URL at a time.
//
// Linux side: `CurlUrlSessions` (libcurl on the event loop). Fake: `FakeUrlSessions`. Both pass the
// same contract tests.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Platform/UrlError.h"

namespace lanternfold {

/// Over which addresses the host is reached. A request that goes through a proxy leaves that to the
/// proxy.
enum class UrlAddressFamily { any, ipv4, ipv6 };

struct UrlRequest {
  std::string url;
  /// The longest silence. The shorter one of this and the session's counts.
  std::chrono::milliseconds timeout{60'000};
  UrlAddressFamily addressFamily = UrlAddressFamily::any;
  friend bool operator==(const UrlRequest&, const UrlRequest&) = default;
};

/// Sessions are ephemeral: no cookies, no cache, no credentials of other requests.
struct UrlSessionConfiguration {
  std::chrono::milliseconds timeoutForRequest;   ///< the longest silence
  std::chrono::milliseconds timeoutForResource;  ///< the whole exchange, redirects included
  friend bool operator==(const UrlSessionConfiguration&, const UrlSessionConfiguration&) = default;
};

/// What a data task ends with: the body of an answer of any status, empty when it had none; or an
/// error; or neither, when there was no answer to speak of.
struct UrlAnswer {
  std::optional<std::string> data;  ///< at most `longestUrlAnswerBytes`
  std::error_code error;            ///< of `urlErrorDomain()`
  friend bool operator==(const UrlAnswer&, const UrlAnswer&) = default;
};

inline constexpr std::size_t longestUrlAnswerBytes = 64 * 1024;
inline constexpr int mostUrlRedirects = 5;

/// One request. Any thread. It goes on without its session and without whoever holds it, and is
/// destroyed after its completion.
class UrlSessionDataTask {
 public:
  virtual ~UrlSessionDataTask() = default;

  /// Sends the request; a task that was never resumed sends nothing and completes only when it is
  /// cancelled. A second call does nothing.
  virtual void resume() = 0;
  /// Ends the task with `UrlErrorCode::cancelled`, unless it has ended already.
  virtual void cancel() = 0;
};

class UrlSession {
 public:
  /// Called exactly once for a task that is resumed or cancelled, on a background queue, never
  /// before the call that led to it has returned.
  using Completion = std::move_only_function<void(UrlAnswer)>;

  virtual ~UrlSession() = default;

  /// A task that is not yet resumed; never null.
  [[nodiscard]] virtual std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request,
                                                                     Completion completion) = 0;
};

/// Makes sessions; any thread. Redirects are followed to http and https, `mostUrlRedirects` of
/// them; TLS is verified against the system's store or the one given to the composition; proxies of
/// the environment are honoured. Work that is under way when the sessions are destroyed is
/// destroyed without completing.
class UrlSessions {
 public:
  virtual ~UrlSessions() = default;

  [[nodiscard]] virtual std::unique_ptr<UrlSession> makeSession(
      const UrlSessionConfiguration& configuration) = 0;
};

}  // namespace lanternfold
