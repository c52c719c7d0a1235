#include "Tests/Simulation/ScheduleObserver.h"

#include <string>
#include <utility>

namespace lanternfold::simulation {

void ScheduleObserver::began(bool samplesAtOnce) {
  base_ = run_.clock.steadyNow();
  nextDue_ = samplesAtOnce ? *base_ : *base_ + interval_;
}

void ScheduleObserver::intervalSet(std::chrono::seconds interval) {
  interval_ = interval;
  if (nextDue_) began(false);
}

void ScheduleObserver::woke() {
  if (nextDue_ && *nextDue_ < run_.clock.steadyNow()) {
    run_.broken(program_.number(),
                "is late with a sample by " + spanText(run_.clock.steadyNow() - *nextDue_));
  }
}

void ScheduleObserver::received(const ConnectionMetricsRecorder::Event& event, bool setsInterval) {
  const auto now = static_cast<BandwidthClassValue>(recorder_.currentBandwidthClass());
  if (event != ConnectionMetricsRecorder::Event::bandwidthClassChange()) {
    run_.broken(program_.number(), "sent the event \"" + event.rawValue + "\"");
  }
  if (now == class_) run_.broken(program_.number(), "sent an event although the class is the same");
  class_ = now;
  run_.log.add(Happening::classChanged, program_.number(), now);
  if (!setsInterval) return;
  interval_ = expectedInterval(now);
  if (!nextDue_) return;
  // The tick of this very sample, or one that was due while a sample by hand went on.
  mayHaveBeenCancelled_ |= *nextDue_ <= run_.clock.steadyNow();
  began(false);
}

void ScheduleObserver::sampledByHand(bool failed) {
  ++stepsByHand_;
  if (failed) ++failuresByHand_;
}

void ScheduleObserver::ended(const std::vector<SampleOutcome>& outcomes) {
  for (const SampleOutcome& outcome : outcomes) {
    ++steps_;
    if (outcome.isComplete) {
      expected_ = outcome.bandwidthClass;
      run_.log.add(Happening::sampled, program_.number());
    } else {
      ++failures_;
      run_.log.add(Happening::sampleFailed, program_.number());
    }
  }
}

void ScheduleObserver::rests() {
  checkTicks();
  checkClass();
  const std::uint64_t lines = log_.takeFailedSamples();
  if (lines != failures_ - failuresByHand_) {
    run_.broken(program_.number(), "printed " + std::to_string(lines) + " lines about " +
                                       std::to_string(failures_ - failuresByHand_) +
                                       " failed samples");
  }
  if (log_.unexpected()) run_.broken(program_.number(), "printed \"" + *log_.unexpected() + "\"");
  steps_ = failures_ = stepsByHand_ = failuresByHand_ = 0;
  mayHaveBeenCancelled_ = false;
}

void ScheduleObserver::checkTicks() {
  const TimePoint now = run_.clock.steadyNow();
  const bool isDue = nextDue_ && *nextDue_ <= now;
  const std::uint64_t samples = steps_ - stepsByHand_;
  if (steps_ < stepsByHand_) run_.broken(program_.number(), "left out a sample that was asked for");
  if (isDue && samples == 0 && !mayHaveBeenCancelled_) {
    run_.broken(program_.number(), "left out a sample that was due");
  }
  if (!isDue && samples > 0 && !mayHaveBeenCancelled_) {
    run_.broken(program_.number(), "took a sample that was not due");
  }
  if (isDue) nextDue_ = now + interval_ - (now - *base_) % interval_;
}

void ScheduleObserver::checkClass() {
  const auto now = static_cast<BandwidthClassValue>(recorder_.currentBandwidthClass());
  if (now != class_) run_.broken(program_.number(), "changed its class without an event");
  if (expected_ && now != *expected_) {
    run_.broken(program_.number(), "is of class " + std::to_string(now) + " where the traffic is " +
                                       std::to_string(*expected_));
  }
  if (recorder_.interval() != interval_) {
    run_.broken(program_.number(), "samples every " + std::to_string(recorder_.interval().count()) +
                                       " s where the class asks for " +
                                       std::to_string(interval_.count()));
  }
}

}  // namespace lanternfold::simulation
