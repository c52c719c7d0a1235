// A data task on libcurl, and what all tasks of the sessions share. Internal to this folder.
//
// Made by: `CurlUrlSession`. Read by: whoever asked for it, as a `UrlSessionDataTask`.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "Platform/Dispatch.h"
#include "Platform/UrlSession.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/Url/CurlExchanges.h"

namespace lanternfold {

class CurlUrlTask;

/// The way from the tasks, on any thread, to the exchanges on the loop, until it is closed. Holds
/// the tasks that are under way.
class CurlUrlTasks {
 public:
  using Key = CurlExchanges::Key;

  CurlUrlTasks(EventLoop& loop, DispatchQueue& queue, CurlUrlSettings settings);
  ~CurlUrlTasks();
  CurlUrlTasks(const CurlUrlTasks&) = delete;
  CurlUrlTasks& operator=(const CurlUrlTasks&) = delete;

  /// Keeps the task until its completion. None when the sessions have been destroyed.
  [[nodiscard]] std::optional<Key> keep(std::shared_ptr<CurlUrlTask> task);
  /// Around the call of a completion, which `close` waits for. Whether it may be called.
  [[nodiscard]] bool beginCompletion(Key key);
  void endCompletion();
  /// Of a task that is kept. Nothing once the sessions have been destroyed.
  void send(Key key, UrlRequest request, CurlExchange::Limits limits);
  void abandon(Key key);

  /// Stops what is under way and destroys its completions, or waits for those that are running:
  /// they may make sessions. Nothing is sent afterwards.
  void close();

  [[nodiscard]] DispatchQueue& queue() const { return queue_; }

 private:
  void ended(Key key, UrlAnswer answer);
  void post(EventLoop::Work work);  // with mutex_ held

  EventLoop& loop_;
  DispatchQueue& queue_;
  std::unique_ptr<CurlExchanges> exchanges_;  ///< used on the loop
  std::mutex mutex_;
  std::map<Key, std::shared_ptr<CurlUrlTask>> tasks_;  // guarded by mutex_
  Key nextKey_ = 0;                                    // guarded by mutex_
  std::size_t runningCompletions_ = 0;                 // guarded by mutex_
  std::condition_variable completionEnded_;
  bool isClosed_ = false;  // guarded by mutex_; stays when the phase has ended
};

/// Any thread.
class CurlUrlTask final : public UrlSessionDataTask,
                          public std::enable_shared_from_this<CurlUrlTask> {
 public:
  CurlUrlTask(std::shared_ptr<CurlUrlTasks> tasks, UrlRequest request, CurlExchange::Limits limits,
              UrlSession::Completion completion);

  void resume() override;
  void cancel() override;

  /// The exchange is over; without meaning for a task that was cancelled meanwhile.
  void ended(UrlAnswer answer);
  /// The task will never complete.
  [[nodiscard]] UrlSession::Completion takeCompletion();

 private:
  enum class Phase { idle, running, ended };

  // With mutex_ held. `neverCalled` takes a completion that may hold this task.
  [[nodiscard]] bool isKept(UrlSession::Completion& neverCalled);
  void completeWith(UrlAnswer answer);
  void complete(UrlAnswer answer);

  const std::shared_ptr<CurlUrlTasks> tasks_;
  const UrlRequest request_;
  const CurlExchange::Limits limits_;
  /// Held for the whole of `resume` and `cancel`, and taken before the completion is called: that
  /// never runs before the call that led to it has come to its end.
  std::mutex mutex_;
  UrlSession::Completion completion_;     // guarded by mutex_
  Phase phase_ = Phase::idle;             // guarded by mutex_
  std::optional<CurlUrlTasks::Key> key_;  // guarded by mutex_; stays when the phase has ended
};

}  // namespace lanternfold
