#include "Tests/Simulation/RecorderProgram.h"

#include <algorithm>
#include <utility>

namespace lanternfold::simulation {

namespace {

/// A schedule, what a change of the interval has left behind of earlier ones, and a read.
constexpr std::size_t mostWaitingWorks = 16;

}  // namespace

struct RecorderProgram::Objects {
  ProgramParts& parts;
  ScheduleObserver& schedule;
  std::unique_ptr<RecordedConnectionMetricsReader> reader;
  Subscription events;
};

RecorderProgram::RecorderProgram(Installation& installation, RecorderHabits habits)
    : installation_(installation),
      run_(installation.run),
      habits_(habits),
      turn_(run_, ++installation.programsSoFar) {}

void RecorderProgram::begin() {
  turn_.begin([this] { live(); });
}

void RecorderProgram::live() {
  ProgramParts parts(installation_, turn_);
  ScheduleObserver schedule(run_, turn_, *parts.recorder, parts.log);
  Objects objects{parts, schedule};
  start(objects);
  settle(objects);
  TimePoint nextUse = run_.clock.steadyNow() + run_.random.waiting(habits_.meanTimeBetweenUses);
  while (!isAskedToEnd_) {
    turn_.waitUntil(std::min(parts.dispatch.nextDue().value_or(TimePoint::max()), nextUse));
    if (isAskedToEnd_) break;
    schedule.woke();
    settle(objects);
    if (run_.clock.steadyNow() < nextUse) continue;
    use(objects);
    settle(objects);
    nextUse = run_.clock.steadyNow() + run_.random.waiting(habits_.meanTimeBetweenUses);
  }
}

void RecorderProgram::start(Objects& objects) {
  ConnectionMetricsRecorder& recorder = *objects.parts.recorder;
  // Before the start, whose first sample may be taken inside of it.
  objects.events = recorder.eventsPublisher().subscribe(
      [&objects, sets = habits_.isAdaptive](const ConnectionMetricsRecorder::Event& event) {
        objects.schedule.received(event, sets);
      });
  if (habits_.isAdaptive) {
    objects.reader = std::make_unique<RecordedConnectionMetricsReader>(objects.parts.recorder);
    readInBackground(objects);
  } else {
    recorder.start();
    objects.schedule.began(true);
  }
}

void RecorderProgram::settle(Objects& objects) {
  do {
    objects.schedule.ended(objects.parts.observer->takeOutcomes());
  } while (objects.parts.dispatch.runOne());
  objects.schedule.rests();
  failedRestores_ += objects.parts.log.takeFailedRestores();
  if (failedRestores_ > installation_.faultsOfReading) {
    run_.broken(turn_.number(), "printed a failed restore more than once");
  }
  const std::size_t works = objects.parts.dispatch.waitingWorks();
  if (works > mostWaitingWorks) {
    run_.broken(turn_.number(), "has " + std::to_string(works) + " works waiting");
  }
}

void RecorderProgram::use(Objects& objects) {
  run_.log.add(Happening::readByUser, turn_.number());
  switch (run_.random.below(habits_.isSetByHand ? 4 : 3)) {
    case 0:
      return readSynchronously(objects);
    case 1:
      return readInBackground(objects);
    case 2:
      return lookUp(objects);
    default:
      return useByHand(objects);
  }
}

void RecorderProgram::useByHand(Objects& objects) {
  ConnectionMetricsRecorder& recorder = *objects.parts.recorder;
  switch (run_.random.below(3)) {
    case 0:
      run_.log.add(Happening::recorderStopped, turn_.number());
      recorder.stop();
      objects.schedule.stopped();
      break;
    case 1:
      run_.log.add(Happening::recorderStarted, turn_.number());
      recorder.start();
      objects.schedule.began(true);
      break;
    default: {
      const std::chrono::seconds interval(run_.random.between(5, 600));
      run_.log.add(Happening::intervalSet, turn_.number(), interval.count());
      recorder.setInterval(interval);
      objects.schedule.intervalSet(interval);
    }
  }
}

void RecorderProgram::readSynchronously(Objects& objects) {
  const bool starts = objects.reader && !objects.parts.recorder->isStarted();
  if (starts) objects.schedule.began(true);
  const auto found = objects.reader ? objects.reader->read() : objects.parts.recorder->onceSync();
  objects.schedule.sampledByHand(!found.has_value());
  if (objects.reader && found) compareWithHeld(objects, *found);
}

void RecorderProgram::readInBackground(Objects& objects) {
  const bool starts = objects.reader && !objects.parts.recorder->isStarted();
  if (starts) objects.schedule.began(true);
  auto completion = [&objects, starts](ConnectionMetricsRecorder::Metrics outcome) {
    // What starts the recorder is answered by what was stored before.
    if (!starts) objects.schedule.sampledByHand(!outcome.has_value());
  };
  if (objects.reader) {
    objects.reader->read(std::move(completion));
  } else {
    objects.parts.recorder->once(std::move(completion));
  }
}

void RecorderProgram::lookUp(Objects& objects) {
  compareWithHeld(objects, objects.parts.recorder->allMetrics());
}

void RecorderProgram::compareWithHeld(Objects& objects, const ConnectionMetricsMap& found) {
  objects.schedule.ended(objects.parts.observer->takeOutcomes());
  const RememberedInterfaces* held = objects.parts.observer->held();
  const bool isSame =
      held && held->size() == found.size() && std::ranges::all_of(*held, [&](const auto& entry) {
        const ConnectionMetrics* metrics = found.find(entry.first);
        return metrics && *metrics == entry.second.adjusted;
      });
  if (!isSame) run_.broken(turn_.number(), "gives its user other counters than it holds");
}

}  // namespace lanternfold::simulation
