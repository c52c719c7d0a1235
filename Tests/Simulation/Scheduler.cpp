#include "Tests/Simulation/Scheduler.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold::simulation {

void Scheduler::at(TimePoint moment, std::function<void()> event) {
  push({.due = moment, .draw = random_.bits(), .task = nullptr, .event = std::move(event)});
}

std::shared_ptr<Scheduler::Task> Scheduler::start(std::function<void()> body) {
  auto task = std::make_shared<Task>(std::move(body));
  wake(task);
  return task;
}

void Scheduler::wake(const std::shared_ptr<Task>& task) {
  if (task->isFinished()) return;
  push({.due = clock_.steadyNow(), .draw = random_.bits(), .task = task, .turn = ++task->turn_});
}

void Scheduler::runUntil(TimePoint end, const std::function<bool()>& shallStop) {
  while (!entries_.empty() && entries_.front().due <= end && !shallStop()) {
    Entry entry = pop();
    if (entry.task && entry.turn != entry.task->turn_) continue;
    clock_.advanceTo(entry.due);
    run(std::move(entry));
  }
  if (!shallStop()) clock_.advanceTo(end);
}

void Scheduler::waitUntil(TimePoint moment) {
  if (!current_) fatalError("only a simulated program can wait for its turn");
  const std::shared_ptr<Task> task = current_;
  push({.due = moment, .draw = random_.bits(), .task = task, .turn = ++task->turn_});
  task->fiber_.suspend();
}

void Scheduler::push(Entry entry) {
  entries_.push_back(std::move(entry));
  std::ranges::push_heap(entries_, std::greater{});
}

Scheduler::Entry Scheduler::pop() {
  std::ranges::pop_heap(entries_, std::greater{});
  Entry entry = std::move(entries_.back());
  entries_.pop_back();
  return entry;
}

void Scheduler::run(Entry entry) {
  if (!entry.task) {
    entry.event();
    return;
  }
  current_ = std::move(entry.task);
  current_->fiber_.resume();
  current_ = nullptr;
}

}  // namespace lanternfold::simulation
