// URL sessions on libcurl and the event loop.
//
// Made by: the composition, one per program. Used by: the public-info resolvers.
#pragma once

#include <memory>

#include "Platform/Dispatch.h"
#include "Platform/UrlSession.h"
#include "PlatformLinux/Url/CurlUrlSettings.h"

namespace lanternfold {

class CurlUrlTasks;
class EventLoop;

/// No thread waits for a request. libcurl looks each name up on a thread that lives as long as the
/// system's resolver needs; a request that ends sooner does not wait for it, nor does destruction.
///
/// Completions run on the global queue of utility work. Requests go out from the network namespace
/// of the event loop's thread.
class CurlUrlSessions final : public UrlSessions {
 public:
  /// `loop` and `dispatch` outlive the sessions.
  CurlUrlSessions(EventLoop& loop, Dispatch& dispatch, CurlUrlSettings settings);
  /// Not on the loop's thread, and not by a completion: one that is running is waited for.
  ~CurlUrlSessions() override;
  CurlUrlSessions(const CurlUrlSessions&) = delete;
  CurlUrlSessions& operator=(const CurlUrlSessions&) = delete;

  [[nodiscard]] std::unique_ptr<UrlSession> makeSession(
      const UrlSessionConfiguration& configuration) override;

 private:
  const std::shared_ptr<CurlUrlTasks> tasks_;
};

}  // namespace lanternfold
