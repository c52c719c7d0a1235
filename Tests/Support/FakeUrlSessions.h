// URL sessions over servers that a test sets up.
//
// Completions run on a global queue of the dispatch they are made with; over a `SimulatedDispatch`
// delays and time limits pass on its virtual clock.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Dispatch.h"
#include "Platform/UrlSession.h"

namespace lanternfold {

/// Holds what stands behind each URL and remembers every request that was sent. Any thread.
class FakeUrlSessions final : public UrlSessions {
 public:
  /// What stands behind one URL.
  struct Server {
    /// Given in the end: a body, an error, or neither.
    UrlAnswer answer = {};
    /// Until then; the time limits of a request end it sooner.
    std::chrono::nanoseconds delay{0};
    enum class Manner {
      silentUntilTheAnswer,
      /// Sends a little all the time: only the limit of the whole exchange ends it sooner.
      trickling,
    };
    Manner manner = Manner::silentUntilTheAnswer;
    /// Over which family alone its name has addresses; `any` for both.
    UrlAddressFamily family = UrlAddressFamily::any;
    /// Where it sends its clients instead of answering; empty for nowhere.
    std::string redirectsTo = {};
  };

  /// One request that was sent, and what became of it.
  struct Exchange {
    UrlRequest request;
    UrlSessionConfiguration configuration;
    std::size_t session = 0;  ///< which one sent it, counted from 0 in the order of their making
    enum class State { running, cancelled, completed };
    State state = State::running;
  };

  /// `dispatch` outlives the sessions.
  explicit FakeUrlSessions(Dispatch& dispatch);
  /// What is under way is destroyed without completing.
  ~FakeUrlSessions() override;

  [[nodiscard]] std::unique_ptr<UrlSession> makeSession(
      const UrlSessionConfiguration& configuration) override;

  // What the requests that are sent from now on meet. A host without a server cannot be found.

  void setServer(std::string url, Server server);
  void answer(std::string url, std::string body, std::chrono::nanoseconds delay = {});
  void fail(std::string url, std::error_code error, std::chrono::nanoseconds delay = {});
  /// Accepts and stays silent: only a time limit or a cancel ends a request.
  void neverAnswer(std::string url);
  void removeServer(std::string_view url);

  /// The configuration of every session ever made, in order.
  [[nodiscard]] std::vector<UrlSessionConfiguration> configurations() const;
  /// Every request that was sent, in order.
  [[nodiscard]] std::vector<Exchange> exchanges() const;
  /// The URLs of those.
  [[nodiscard]] std::vector<std::string> requestedUrls() const;
  /// Tasks that were resumed or cancelled and have not completed.
  [[nodiscard]] std::size_t tasksUnderWay() const;

 private:
  class World;
  class Session;
  class Task;

  const std::shared_ptr<World> world_;
};

}  // namespace lanternfold
