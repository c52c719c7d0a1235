#include "Tests/Simulation/DirectSampleObserver.h"

#include <utility>

namespace lanternfold::simulation {

void DirectSampleObserver::bootDateRead(std::optional<WallTime> date) {
  endSample();
  const auto registered = storage_.lastRegisterDate();
  isResetDue_ = storage_.isPersistent() && date && registered && *date > *registered;
  if (isResetDue_) run_.log.add(Happening::rebootNoticed, program_.number());
}

void DirectSampleObserver::countersRead(std::shared_ptr<const MachineReading> reading) {
  const bool isReset = std::exchange(isResetDue_, false);
  endSample();
  const auto previousDate = storage_.lastRegisterDate();
  Sample sample{.before = contents()};
  if (isReset && (!sample.before.empty() || previousDate)) {
    run_.broken(program_.number(), "keeps what it held before the reboot");
  }
  const bool countsFromHere = !hasSampled_ && !storage_.isPersistent();
  sample.expected = expectedAfter(sample.before, *reading,
                                  countsFromHere ? Counting::fromOwnBeginning : counting_);
  sample.bandwidthClass = classOf(sample, *reading, previousDate);
  sample_ = std::move(sample);
}

void DirectSampleObserver::readingFailed() {
  isResetDue_ = false;
  endSample();
  outcomes_.push_back({});
}

std::vector<SampleOutcome> DirectSampleObserver::takeOutcomes() {
  endSample();
  return std::exchange(outcomes_, {});
}

void DirectSampleObserver::endSample() {
  if (std::exchange(isResetDue_, false)) outcomes_.push_back({});  // it could not be saved
  if (!sample_) return;
  check(*sample_);
  const bool isComplete = canSave_();
  hasSampled_ |= isComplete;
  outcomes_.push_back({.isComplete = isComplete, .bandwidthClass = sample_->bandwidthClass});
  held_ = std::move(sample_->expected);
  sample_.reset();
}

RememberedInterfaces DirectSampleObserver::contents() {
  RememberedInterfaces contents;
  const auto original = storage_.allMetrics(ConnectionMetricsType::original);
  const auto adjusted = storage_.allMetrics(ConnectionMetricsType::adjusted);
  for (std::size_t position = 0; position < original.size(); ++position) {
    const std::string& name = original.name(position);
    const ConnectionMetrics* of = adjusted.find(name);
    RememberedInterface interface{.original = original.value(position)};
    if (of) interface.adjusted = *of;
    const auto known = held_.find(name);
    if (known != held_.end() && known->second.holdsTheSame(interface)) {
      interface.truth = known->second.truth;
    }
    contents.emplace(name, interface);
  }
  return contents;
}

// The date moves with every registration, so that all but the first interface of a reading were
// registered in this very moment.
BandwidthClassValue DirectSampleObserver::classOf(const Sample& sample,
                                                  const MachineReading& reading,
                                                  std::optional<WallTime> previousDate) const {
  if (!previousDate || reading.given.empty()) return 0;
  const auto before = sample.before.find(reading.given.name(0));
  if (before == sample.before.end()) return 0;
  return expectedClass(before->second.adjusted,
                       sample.expected.find(before->first)->second.adjusted,
                       run_.clock.now() - *previousDate);
}

void DirectSampleObserver::check(const Sample& sample) {
  if (!holdTheSame(contents(), sample.expected)) {
    run_.broken(program_.number(), "holds other records than the reading gives");
  }
  for (const auto& [name, before] : sample.before) {
    const RememberedInterface& after = sample.expected.find(name)->second;
    if (counting_ != Counting::capped) continue;
    if (const auto back = counterThatWentBack(before.adjusted, after.adjusted)) {
      run_.broken(program_.number(), name + " went back in " + *back);
    }
    if (!hasSampled_ && !storage_.isPersistent()) continue;
    if (const auto lost = trafficLost(before, after)) {
      run_.broken(program_.number(), name + ": " + *lost);
    }
  }
}

}  // namespace lanternfold::simulation
