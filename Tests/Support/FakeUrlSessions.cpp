#include "Tests/Support/FakeUrlSessions.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace lanternfold {
namespace {

using Server = FakeUrlSessions::Server;
using Servers = std::map<std::string, Server, std::less<>>;

/// How a request ends, and how long after it was sent.
struct Outcome {
  UrlAnswer answer;
  std::chrono::nanoseconds delay{0};
};

Outcome failure(UrlErrorCode code, std::chrono::nanoseconds delay) {
  return {{.data = std::nullopt, .error = code}, delay};
}

std::optional<UrlErrorCode> faultOf(std::string_view url) {
  const auto scheme = url.find("://");
  if (scheme == std::string_view::npos) return UrlErrorCode::badUrl;
  const std::string_view name = url.substr(0, scheme);
  if (name != "http" && name != "https") return UrlErrorCode::unsupportedUrl;
  const std::string_view behind = url.substr(scheme + 3);
  if (behind.empty() || behind.front() == '/' || behind.front() == '?' || behind.front() == ':') {
    return UrlErrorCode::badUrl;
  }
  return std::nullopt;
}

bool isReachable(const Server& server, UrlAddressFamily family) {
  return server.family == UrlAddressFamily::any || family == UrlAddressFamily::any ||
         server.family == family;
}

/// As the servers stand now: one that is changed later does not change a request under way.
Outcome outcomeOf(const Servers& servers, const UrlRequest& request,
                  const UrlSessionConfiguration& limits) {
  const std::chrono::nanoseconds longestSilence =
      std::min(request.timeout, limits.timeoutForRequest);
  std::string_view url = request.url;
  std::chrono::nanoseconds passed{0};
  for (int redirects = 0;; ++redirects) {
    if (redirects > mostUrlRedirects) return failure(UrlErrorCode::tooManyRedirects, passed);
    if (const auto fault = faultOf(url)) return failure(*fault, passed);
    const auto found = servers.find(url);
    if (found == servers.end() || !isReachable(found->second, request.addressFamily)) {
      return failure(UrlErrorCode::cannotFindHost, passed);
    }
    const Server& server = found->second;
    std::chrono::nanoseconds end = limits.timeoutForResource;
    if (server.manner == Server::Manner::silentUntilTheAnswer) {
      end = std::min(end, passed + longestSilence);
    }
    if (server.delay >= end - passed) return failure(UrlErrorCode::timedOut, end);
    passed += server.delay;
    if (server.redirectsTo.empty()) {
      if (server.answer.data && server.answer.data->size() > longestUrlAnswerBytes) {
        return failure(UrlErrorCode::dataLengthExceedsMaximum, passed);
      }
      return {server.answer, passed};
    }
    url = server.redirectsTo;
  }
}

}  // namespace

/// What all sessions, tasks and works share.
class FakeUrlSessions::World {
 public:
  explicit World(Dispatch& dispatch) : queue(dispatch.globalQueue(QualityOfService::utility)) {}

  DispatchQueue& queue;
  std::mutex mutex;  // guards everything below, and what the tasks hold
  Servers servers;
  std::vector<UrlSessionConfiguration> configurations;
  std::vector<Exchange> exchanges;
  /// Resumed or cancelled, and not completed; holds them when nobody else does.
  std::set<std::shared_ptr<Task>> underWay;
  bool isClosed = false;
};

class FakeUrlSessions::Task final : public UrlSessionDataTask,
                                    public std::enable_shared_from_this<Task> {
 public:
  Task(std::shared_ptr<World> world, std::size_t session, UrlSessionConfiguration configuration,
       UrlRequest request, UrlSession::Completion completion)
      : world_(std::move(world)),
        session_(session),
        configuration_(configuration),
        request_(std::move(request)),
        completion_(std::move(completion)) {}

  void resume() override {
    const std::lock_guard lock(world_->mutex);
    if (world_->isClosed || phase_ != Phase::idle) return;
    phase_ = Phase::running;
    exchange_ = world_->exchanges.size();
    world_->exchanges.push_back({request_, configuration_, session_});
    Outcome outcome = outcomeOf(world_->servers, request_, configuration_);
    completeAfter(outcome.delay, std::move(outcome.answer), Phase::running);
  }

  void cancel() override {
    const std::lock_guard lock(world_->mutex);
    if (world_->isClosed || phase_ == Phase::cancelled || phase_ == Phase::completed) return;
    phase_ = Phase::cancelled;
    if (exchange_) world_->exchanges[*exchange_].state = Exchange::State::cancelled;
    completeAfter(std::chrono::nanoseconds::zero(),
                  {.data = std::nullopt, .error = UrlErrorCode::cancelled}, Phase::cancelled);
  }

  /// With the world locked. Whoever takes it out calls it, or destroys it, without the lock.
  [[nodiscard]] UrlSession::Completion takeCompletion() {
    phase_ = Phase::completed;
    return std::exchange(completion_, nullptr);
  }

 private:
  enum class Phase { idle, running, cancelled, completed };

  void completeAfter(std::chrono::nanoseconds delay, UrlAnswer answer, Phase expected) {
    world_->underWay.insert(shared_from_this());
    world_->queue.after(delay,
                        [weak = weak_from_this(), answer = std::move(answer), expected]() mutable {
                          if (const auto task = weak.lock())
                            task->complete(std::move(answer), expected);
                        });
  }

  void complete(UrlAnswer answer, Phase expected) {
    UrlSession::Completion completion;
    {
      const std::lock_guard lock(world_->mutex);
      if (phase_ != expected) return;
      if (expected == Phase::running) {
        world_->exchanges[*exchange_].state = Exchange::State::completed;
      }
      completion = takeCompletion();
      world_->underWay.erase(shared_from_this());
    }
    completion(std::move(answer));
  }

  const std::shared_ptr<World> world_;
  const std::size_t session_;
  const UrlSessionConfiguration configuration_;
  const UrlRequest request_;
  UrlSession::Completion completion_;
  Phase phase_ = Phase::idle;
  std::optional<std::size_t> exchange_;  // its place among the requests that were sent
};

class FakeUrlSessions::Session final : public UrlSession {
 public:
  Session(std::shared_ptr<World> world, std::size_t number, UrlSessionConfiguration configuration)
      : world_(std::move(world)), number_(number), configuration_(configuration) {}

  [[nodiscard]] std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request,
                                                             Completion completion) override {
    return std::make_shared<Task>(world_, number_, configuration_, std::move(request),
                                  std::move(completion));
  }

 private:
  const std::shared_ptr<World> world_;
  const std::size_t number_;
  const UrlSessionConfiguration configuration_;
};

FakeUrlSessions::FakeUrlSessions(Dispatch& dispatch) : world_(std::make_shared<World>(dispatch)) {}

FakeUrlSessions::~FakeUrlSessions() {
  std::vector<UrlSession::Completion> completions;
  std::set<std::shared_ptr<Task>> tasks;
  const std::lock_guard lock(world_->mutex);
  world_->isClosed = true;
  tasks = std::exchange(world_->underWay, {});
  for (const auto& task : tasks) completions.push_back(task->takeCompletion());
}

std::unique_ptr<UrlSession> FakeUrlSessions::makeSession(
    const UrlSessionConfiguration& configuration) {
  const std::lock_guard lock(world_->mutex);
  world_->configurations.push_back(configuration);
  return std::make_unique<Session>(world_, world_->configurations.size() - 1, configuration);
}

void FakeUrlSessions::setServer(std::string url, Server server) {
  const std::lock_guard lock(world_->mutex);
  world_->servers.insert_or_assign(std::move(url), std::move(server));
}

void FakeUrlSessions::answer(std::string url, std::string body, std::chrono::nanoseconds delay) {
  setServer(std::move(url), {.answer = {.data = std::move(body), .error = {}}, .delay = delay});
}

void FakeUrlSessions::fail(std::string url, std::error_code error, std::chrono::nanoseconds delay) {
  setServer(std::move(url), {.answer = {.data = std::nullopt, .error = error}, .delay = delay});
}

void FakeUrlSessions::neverAnswer(std::string url) {
  setServer(std::move(url), {.answer = {}, .delay = std::chrono::nanoseconds::max()});
}

void FakeUrlSessions::removeServer(std::string_view url) {
  const std::lock_guard lock(world_->mutex);
  if (const auto found = world_->servers.find(url); found != world_->servers.end()) {
    world_->servers.erase(found);
  }
}

std::vector<UrlSessionConfiguration> FakeUrlSessions::configurations() const {
  const std::lock_guard lock(world_->mutex);
  return world_->configurations;
}

std::vector<FakeUrlSessions::Exchange> FakeUrlSessions::exchanges() const {
  const std::lock_guard lock(world_->mutex);
  return world_->exchanges;
}

std::vector<std::string> FakeUrlSessions::requestedUrls() const {
  std::vector<std::string> urls;
  for (const Exchange& exchange : exchanges()) urls.push_back(exchange.request.url);
  return urls;
}

std::size_t FakeUrlSessions::tasksUnderWay() const {
  const std::lock_guard lock(world_->mutex);
  return world_->underWay.size();
}

}  // namespace lanternfold
