#include "Tests/Support/SimulatedDispatch.h"

#include <array>
#include <deque>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

constexpr std::size_t mostWorksOfOneMoment = 1'000'000;

[[noreturn]] void stopForEndlessMoment() {
  fatalError("simulated works append to each other without end while no time passes");
}

}  // namespace

class SimulatedDispatch::Queue final : public DispatchQueue {
 public:
  enum class Mode { serial, concurrent };

  Queue(SimulatedDispatch& dispatch, std::string label, Mode mode)
      : dispatch_(dispatch), label_(std::move(label)), mode_(mode) {}

  void async(Work work) override {
    if (dispatch_.closed_) return;
    works_.push_back(std::move(work));
    if (works_.size() == 1) dispatch_.ready_.push_back(this);
  }

  void after(std::chrono::nanoseconds delay, Work work) override {
    if (delay <= std::chrono::nanoseconds::zero()) {
      async(std::move(work));
    } else {
      dispatch_.delay(delay, *this, std::move(work));
    }
  }

  bool sync(Work work) override { return dispatch_.runInTurn(*this, std::move(work)); }

  [[nodiscard]] bool isCurrent() const override {
    return !dispatch_.running_.empty() && dispatch_.running_.back() == this;
  }
  [[nodiscard]] std::string_view label() const override { return label_; }
  [[nodiscard]] bool isSerial() const { return mode_ == Mode::serial; }

  /// The oldest work, or any one of a concurrent queue.
  [[nodiscard]] Work take() {
    const std::size_t index = mode_ == Mode::serial ? 0 : dispatch_.draw(works_.size());
    const auto taken = works_.begin() + static_cast<std::ptrdiff_t>(index);
    Work work = std::move(*taken);
    works_.erase(taken);
    return work;
  }

  [[nodiscard]] std::size_t waitingWorks() const { return works_.size(); }
  [[nodiscard]] std::deque<Work> takeAll() { return std::exchange(works_, {}); }

 private:
  SimulatedDispatch& dispatch_;
  const std::string label_;
  const Mode mode_;
  std::deque<Work> works_;
};

SimulatedDispatch::SimulatedDispatch(SimulatedClock& clock, std::uint64_t seed)
    : clock_(clock),
      random_(seed),
      mainQueue_(std::make_unique<Queue>(*this, "main", Queue::Mode::serial)) {
  constexpr std::array<std::pair<QualityOfService, const char*>, 4> labels{
      {{QualityOfService::userInteractive, "global.userInteractive"},
       {QualityOfService::userInitiated, "global.userInitiated"},
       {QualityOfService::utility, "global.utility"},
       {QualityOfService::background, "global.background"}}};
  for (const auto& [quality, label] : labels) {
    globalQueues_[quality] = std::make_unique<Queue>(*this, label, Queue::Mode::concurrent);
  }
}

SimulatedDispatch::~SimulatedDispatch() {
  // Works are destroyed while every queue is still there: they may append, in vain.
  closed_ = true;
  const auto delayed = std::exchange(delayed_, {});
  for (Queue* queue : std::exchange(ready_, {})) {
    const auto works = queue->takeAll();
  }
}

DispatchQueue& SimulatedDispatch::mainQueue() { return *mainQueue_; }

DispatchQueue& SimulatedDispatch::serialQueue(std::string_view label, QualityOfService quality) {
  const auto existing = serialQueues_.find(label);
  if (existing != serialQueues_.end()) return *existing->second;
  auto queue = std::make_unique<Queue>(*this, std::string(label), Queue::Mode::serial);
  qualities_.emplace(label, quality);
  return *serialQueues_.emplace(label, std::move(queue)).first->second;
}

std::optional<QualityOfService> SimulatedDispatch::qualityOf(std::string_view label) const {
  const auto known = qualities_.find(label);
  return known == qualities_.end() ? std::nullopt : std::optional(known->second);
}

DispatchQueue& SimulatedDispatch::globalQueue(QualityOfService quality) {
  return *globalQueues_.at(quality);
}

void SimulatedDispatch::runReady() {
  refuseNestedRun();
  for (std::size_t works = 0; runOneDue(); ++works) {
    if (works > mostWorksOfOneMoment) stopForEndlessMoment();
  }
}

void SimulatedDispatch::advance(std::chrono::nanoseconds duration) {
  const TimePoint end = clock_.steadyNow() + duration;
  static_cast<void>(runUntil([] { return false; }, duration));
  clock_.advanceTo(end);
}

bool SimulatedDispatch::runUntil(const std::function<bool()>& done,
                                 std::chrono::nanoseconds limit) {
  refuseNestedRun();
  const TimePoint end = clock_.steadyNow() + limit;
  std::size_t worksOfThisMoment = 0;
  TimePoint moment = clock_.steadyNow();
  while (!done()) {
    if (std::exchange(moment, clock_.steadyNow()) != clock_.steadyNow()) worksOfThisMoment = 0;
    if (moment > end) return false;
    if (runOneDue()) {
      if (++worksOfThisMoment > mostWorksOfOneMoment) stopForEndlessMoment();
      continue;
    }
    if (delayed_.empty() || delayed_.front().due > end) return false;
    clock_.advanceTo(delayed_.front().due);
  }
  return true;
}

std::size_t SimulatedDispatch::waitingWorks() const {
  std::size_t count = delayed_.size();
  for (const Queue* queue : ready_) count += queue->waitingWorks();
  return count;
}

void SimulatedDispatch::delay(std::chrono::nanoseconds delay, Queue& queue,
                              DispatchQueue::Work work) {
  if (closed_) return;
  const TimePoint now = clock_.steadyNow();
  const TimePoint due = now + std::min<TimePoint::duration>(delay, TimePoint::max() - now);
  delayed_.push_back({due, delayedCalls_++, &queue, std::move(work)});
  std::ranges::push_heap(delayed_, std::greater{});
}

void SimulatedDispatch::refuseNestedRun() const {
  if (!running_.empty()) fatalError("a work ran the simulated queues that are running it");
}

void SimulatedDispatch::collectDue() {
  while (!delayed_.empty() && delayed_.front().due <= clock_.steadyNow()) {
    std::ranges::pop_heap(delayed_, std::greater{});
    Delayed due = std::move(delayed_.back());
    delayed_.pop_back();
    due.queue->async(std::move(due.work));
  }
}

bool SimulatedDispatch::runOne() {
  refuseNestedRun();
  return runOneDue();
}

bool SimulatedDispatch::runOneDue() {
  collectDue();
  if (ready_.empty()) return false;
  const auto chosen = ready_.begin() + static_cast<std::ptrdiff_t>(draw(ready_.size()));
  runWorkOf(**chosen);
  return true;
}

bool SimulatedDispatch::runInTurn(Queue& queue, DispatchQueue::Work work) {
  if (queue.isSerial() && std::ranges::find(running_, &queue) != running_.end()) {
    stopForCircularWait(queue);
  }
  if (closed_) return false;
  collectDue();
  bool finished = false;
  queue.async([&finished, work = std::move(work)]() mutable {
    work();
    work = nullptr;
    finished = true;
  });
  while (!finished) runWorkOf(queue);
  return true;
}

void SimulatedDispatch::runWorkOf(Queue& queue) {
  DispatchQueue::Work work = queue.take();
  if (queue.waitingWorks() == 0) std::erase(ready_, &queue);

  running_.push_back(&queue);
  // A simulated program that is killed leaves by an exception.
  const std::unique_ptr<SimulatedDispatch, void (*)(SimulatedDispatch*)> ends(
      this, [](SimulatedDispatch* dispatch) { dispatch->running_.pop_back(); });
  work();
  // What the work holds is released as part of it.
  work = nullptr;
}

std::size_t SimulatedDispatch::draw(std::size_t bound) {
  return static_cast<std::size_t>(random_() % bound);
}

}  // namespace lanternfold
