#include "PlatformLinux/System/AsioDispatch.h"

#include <utility>
#include <vector>

#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/MainThreadRunner.h"

namespace lanternfold {
namespace {

constexpr std::array<const char*, 4> globalQueueLabels{
    "global.userInteractive", "global.userInitiated", "global.utility", "global.background"};

}  // namespace

AsioDispatch::AsioDispatch(EventLoop& loop)
    : AsioDispatch(loop, std::make_unique<MainThreadRunner>()) {}

AsioDispatch::AsioDispatch(EventLoop& loop, std::unique_ptr<QueueRunner> mainRunner)
    : loop_(loop),
      timers_(loop),
      mainRunner_(std::move(mainRunner)),
      mainQueue_("main", WorkQueue::Mode::serial, *mainRunner_, timers_) {
  for (std::size_t index = 0; index < globalQueues_.size(); ++index) {
    globalQueues_[index] =
        std::make_unique<WorkQueue>(globalQueueLabels[index], WorkQueue::Mode::concurrent,
                                    poolFor(static_cast<QualityOfService>(index)), timers_);
  }
}

AsioDispatch::~AsioDispatch() {
  // A running work that waits for another queue would never end once that one gets no turns. Then
  // nothing runs any more, and then what waits is destroyed while every queue is still there: what
  // it holds may append to one.
  refuseWaits();
  ordinaryPool_.stop();
  backgroundPool_.stop();
  timers_.close();
  mainQueue_.close();
  for (const auto& queue : globalQueues_) queue->close();
  for (const auto& [label, queue] : serialQueues_) queue->close();
  // What was destroyed has closed what it had on the loop; a handler of that may be running still,
  // and append to a queue.
  loop_.runAndWait([] {});
}

DispatchQueue& AsioDispatch::mainQueue() { return mainQueue_; }

DispatchQueue& AsioDispatch::serialQueue(std::string_view label, QualityOfService quality) {
  const std::lock_guard lock(mutex_);
  const auto existing = serialQueues_.find(label);
  if (existing != serialQueues_.end()) return *existing->second;
  auto queue = std::make_unique<WorkQueue>(std::string(label), WorkQueue::Mode::serial,
                                           poolFor(quality), timers_);
  if (waitsRefused_) queue->refuseWaits();
  return *serialQueues_.emplace(label, std::move(queue)).first->second;
}

DispatchQueue& AsioDispatch::globalQueue(QualityOfService quality) {
  return *globalQueues_[static_cast<std::size_t>(quality)];
}

void AsioDispatch::runMain() { (void)ownRunner().run(std::nullopt); }

bool AsioDispatch::runMainUntil(std::chrono::steady_clock::time_point deadline) {
  return ownRunner().run(deadline);
}

void AsioDispatch::stopMain() { ownRunner().stop(); }

MainThreadRunner& AsioDispatch::ownRunner() const {
  auto* const own = dynamic_cast<MainThreadRunner*>(mainRunner_.get());
  if (own == nullptr) fatalError("the main queue is run by another loop, not by its dispatch");
  return *own;
}

void AsioDispatch::refuseWaits() {
  mainQueue_.refuseWaits();
  for (const auto& queue : globalQueues_) queue->refuseWaits();
  std::vector<WorkQueue*> queues;
  {
    const std::lock_guard lock(mutex_);
    waitsRefused_ = true;
    for (const auto& [label, queue] : serialQueues_) queues.push_back(queue.get());
  }
  // Without the lock: a work that is destroyed may ask for a queue.
  for (WorkQueue* queue : queues) queue->refuseWaits();
}

WorkerPool& AsioDispatch::poolFor(QualityOfService quality) {
  return quality == QualityOfService::background ? backgroundPool_ : ordinaryPool_;
}

}  // namespace lanternfold
