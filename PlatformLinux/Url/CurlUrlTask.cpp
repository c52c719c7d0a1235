#include "PlatformLinux/Url/CurlUrlTask.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

CurlUrlTasks::CurlUrlTasks(EventLoop& loop, DispatchQueue& queue, CurlUrlSettings settings)
    : loop_(loop),
      queue_(queue),
      exchanges_(std::make_unique<CurlExchanges>(loop.context(), std::move(settings))) {}

CurlUrlTasks::~CurlUrlTasks() = default;

std::optional<CurlUrlTasks::Key> CurlUrlTasks::keep(std::shared_ptr<CurlUrlTask> task) {
  const std::lock_guard lock(mutex_);
  if (isClosed_) return std::nullopt;
  const Key key = nextKey_++;
  tasks_.emplace(key, std::move(task));
  return key;
}

bool CurlUrlTasks::beginCompletion(Key key) {
  std::shared_ptr<CurlUrlTask> task;  // destroyed without the lock
  const std::lock_guard lock(mutex_);
  const auto found = tasks_.find(key);
  if (found == tasks_.end()) return false;
  task = std::move(found->second);
  tasks_.erase(found);
  ++runningCompletions_;
  return true;
}

void CurlUrlTasks::endCompletion() {
  const std::lock_guard lock(mutex_);
  --runningCompletions_;
  completionEnded_.notify_all();
}

void CurlUrlTasks::send(Key key, UrlRequest request, CurlExchange::Limits limits) {
  const std::lock_guard lock(mutex_);
  post([this, key, limits, request = std::move(request)]() mutable {
    exchanges_->begin(key, std::move(request), limits,
                      [this, key](UrlAnswer answer) { ended(key, std::move(answer)); });
  });
}

void CurlUrlTasks::abandon(Key key) {
  const std::lock_guard lock(mutex_);
  post([this, key] { exchanges_->abandon(key); });
}

/// What is posted runs before `close` has returned.
void CurlUrlTasks::post(EventLoop::Work work) {
  if (!isClosed_) loop_.post(std::move(work));
}

void CurlUrlTasks::ended(Key key, UrlAnswer answer) {
  std::shared_ptr<CurlUrlTask> task;
  {
    const std::lock_guard lock(mutex_);
    if (const auto found = tasks_.find(key); found != tasks_.end()) task = found->second;
  }
  if (task) task->ended(std::move(answer));
}

void CurlUrlTasks::close() {
  // What has been posted would find nothing behind it.
  if (loop_.isCurrent()) fatalError("URL sessions were destroyed by a handler of the event loop");
  std::map<Key, std::shared_ptr<CurlUrlTask>> tasks;
  {
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    tasks.swap(tasks_);
  }
  loop_.runAndWait([this] { exchanges_.reset(); });
  for (const auto& [key, task] : tasks) static_cast<void>(task->takeCompletion());
  std::unique_lock lock(mutex_);
  completionEnded_.wait(lock, [this] { return runningCompletions_ == 0; });
}

CurlUrlTask::CurlUrlTask(std::shared_ptr<CurlUrlTasks> tasks, UrlRequest request,
                         CurlExchange::Limits limits, UrlSession::Completion completion)
    : tasks_(std::move(tasks)),
      request_(std::move(request)),
      limits_(limits),
      completion_(std::move(completion)) {}

void CurlUrlTask::resume() {
  UrlSession::Completion neverCalled;  // destroyed without the lock
  const std::lock_guard lock(mutex_);
  if (phase_ != Phase::idle || !isKept(neverCalled)) return;
  phase_ = Phase::running;
  tasks_->send(*key_, request_, limits_);
}

void CurlUrlTask::cancel() {
  UrlSession::Completion neverCalled;
  const std::lock_guard lock(mutex_);
  if (phase_ == Phase::ended) return;
  if (phase_ == Phase::running) tasks_->abandon(*key_);
  if (phase_ == Phase::idle && !isKept(neverCalled)) return;
  completeWith({.data = std::nullopt, .error = UrlErrorCode::cancelled});
}

/// Whether the sessions are still there to keep the task; otherwise it ends without a word.
bool CurlUrlTask::isKept(UrlSession::Completion& neverCalled) {
  key_ = tasks_->keep(shared_from_this());
  if (key_) return true;
  phase_ = Phase::ended;
  neverCalled = std::exchange(completion_, nullptr);
  return false;
}

void CurlUrlTask::ended(UrlAnswer answer) {
  const std::lock_guard lock(mutex_);
  if (phase_ == Phase::running) completeWith(std::move(answer));
}

UrlSession::Completion CurlUrlTask::takeCompletion() {
  const std::lock_guard lock(mutex_);
  phase_ = Phase::ended;
  return std::exchange(completion_, nullptr);
}

void CurlUrlTask::completeWith(UrlAnswer answer) {
  phase_ = Phase::ended;
  tasks_->queue().async([weak = weak_from_this(), answer = std::move(answer)]() mutable {
    if (const auto task = weak.lock()) task->complete(std::move(answer));
  });
}

void CurlUrlTask::complete(UrlAnswer answer) {
  if (!tasks_->beginCompletion(*key_)) return;
  {
    // Destroyed before the end: what it holds may know the sessions.
    auto completion = takeCompletion();
    if (completion) completion(std::move(answer));
  }
  tasks_->endCompletion();
}

}  // namespace lanternfold
