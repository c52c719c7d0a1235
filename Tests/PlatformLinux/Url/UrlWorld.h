// URL sessions of the Linux side in a network of the test's own, with names of its own.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/UrlSession.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/Url/CurlUrlSessions.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"

namespace lanternfold::test {

/// Longer than any test should need, shorter than ctest waits.
inline constexpr UrlSessionConfiguration patientLimits{
    .timeoutForRequest = std::chrono::seconds(20), .timeoutForResource = std::chrono::seconds(30)};

/// "answer: BODY", "error -1001" or "nothing".
[[nodiscard]] std::string textOf(const UrlAnswer& answer);

/// Answers as they come, for a test's thread to wait for.
class UrlAnswers {
 public:
  [[nodiscard]] UrlSession::Completion completion();
  /// Waits until there are that many, thirty seconds at the most; their texts in order.
  [[nodiscard]] std::vector<std::string> await(std::size_t count) const;
  [[nodiscard]] std::size_t count() const;

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> texts;  // guarded by mutex
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

class UrlWorld {
 public:
  /// Enters the namespace: loopback is up, "localhost" has an address of each family,
  /// "four.example" one, and no name server is there.
  void open(CurlUrlSettings settings = {.userAgent = "lanternfold-test/1.0"});

  /// The text of what comes, for a session of these limits.
  [[nodiscard]] std::string fetch(const UrlRequest& request,
                                  const UrlSessionConfiguration& limits = patientLimits);
  [[nodiscard]] std::string fetch(const std::string& url,
                                  const UrlSessionConfiguration& limits = patientLimits);

  /// Other settings, with sessions made anew.
  void remake(CurlUrlSettings settings);
  [[nodiscard]] UrlSessions& sessions() { return *sessions_; }
  void destroySessions() { sessions_.reset(); }
  [[nodiscard]] AsioDispatch& dispatch() { return *dispatch_; }

 private:
  std::unique_ptr<NetworkNamespace> network_;
  std::unique_ptr<EventLoop> loop_;
  std::unique_ptr<AsioDispatch> dispatch_;
  std::unique_ptr<CurlUrlSessions> sessions_;
};

/// For SetUp: the world is open, or the test has ended.
#define OPEN_URL_WORLD(world)                    \
  do {                                           \
    REQUIRE_ROOT("to make a network namespace"); \
    ASSERT_NO_FATAL_FAILURE((world).open());     \
  } while (false)

}  // namespace lanternfold::test
