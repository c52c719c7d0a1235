#include "Tests/Simulation/FileObserver.h"

#include <algorithm>
#include <utility>

#include "Tests/Simulation/DataFileText.h"

namespace lanternfold::simulation {
namespace {

constexpr std::size_t versionsKept = 32;

bool isFault(const std::error_code& error) { return error != std::errc::no_such_file_or_directory; }

/// Whether records `found` of an interface stood in one of `bases`, or follow from two of them and
/// the reading; fills in the truth behind them.
bool followsFrom(const std::vector<std::shared_ptr<const RememberedInterfaces>>& bases,
                 const MachineReading& reading, Counting counting, const std::string& name,
                 RememberedInterface& found) {
  const ConnectionMetrics* given = reading.given.find(name);
  const auto in = [&name](const RememberedInterfaces& base) {
    const auto place = base.find(name);
    return place == base.end() ? nullptr : &place->second;
  };
  for (auto earlier = bases.begin(); earlier != bases.end(); ++earlier) {
    const RememberedInterface* old = in(**earlier);
    if (old && old->holdsTheSame(found)) {
      found.truth = old->truth;
      return true;
    }
    for (auto later = earlier; given && later != bases.end(); ++later) {
      const auto expected =
          expectedInterface(old, in(**later), *given, reading.truth.find(name)->second, counting);
      if (expected.holdsTheSame(found)) {
        found.truth = expected.truth;
        return true;
      }
    }
  }
  return false;
}

}  // namespace

void FileObserver::lockTaken(const Turn& program) {
  State& state = states_[program.number()];
  state.step = Step{.versionAtLock = current().number,
                    .wasHampered = state.heldIsUncertain,
                    .bases = {state.held}};
}

void FileObserver::bootDateRead(const Turn& program, std::optional<WallTime> date) {
  State& state = states_[program.number()];
  if (!state.step) return;
  state.step->bootDate = date;
}

void FileObserver::lookedUp(const Turn& program,
                            const std::expected<FileAttributes, std::error_code>& attributes) {
  State& state = states_[program.number()];
  if (!state.step) return;
  state.step->wasHampered |= !attributes && isFault(attributes.error());
  state.step->fileDate = attributes ? std::optional(attributes->modificationDate) : std::nullopt;
  // The look behind the reading of the boot date is the one that it is compared with.
  if (state.step->bootDate) resetIfDue(program, state);
  state.step->bootDate.reset();
}

void FileObserver::loaded(const Turn& program,
                          const std::expected<FileContents, std::error_code>& found) {
  State& state = states_[program.number()];
  if (!found) {
    if (state.step) state.step->wasHampered |= isFault(found.error());
    return;
  }
  const auto version = std::find_if(versions_.rbegin(), versions_.rend(),
                                    [&](const Version& one) { return one.bytes == found->bytes; });
  if (version == versions_.rend()) {
    run_.broken(program.number(), "read a text that nobody has put there whole");
    return;
  }
  if (!version->contents) return;  // no form of the storage: it keeps what it held
  state.held = version->contents;
  state.heldIsUncertain = false;
  state.heldVersion = version->number;
  if (state.step) state.step->bases.push_back(state.held);
}

void FileObserver::countersRead(const Turn& program,
                                std::shared_ptr<const MachineReading> reading) {
  State& state = states_[program.number()];
  if (!state.step) {
    run_.broken(program.number(), "read the counters without holding the lock");
    return;
  }
  if (state.step->isReset && !state.step->resetIsSaved) {
    run_.broken(program.number(), "read the counters after a reset that it has not saved");
  }
  state.step->reading = std::move(reading);
  state.step->readAt = run_.clock.now();
}

void FileObserver::keepingAsideFailed(const Turn& program) {
  State& state = states_[program.number()];
  run_.log.add(Happening::saveFailed, program.number());
  if (!state.step || !state.step->reading) return;  // of a reset, which leaves nothing
  // What the storage has registered by now, though nobody has seen it.
  state.held = std::make_shared<const RememberedInterfaces>(
      expectedAfter(*state.held, *state.step->reading, counting_));
  state.heldIsUncertain |= state.step->wasDisturbed || state.step->wasHampered;
}

void FileObserver::saves(const Turn& program, std::string_view bytes) {
  State& state = states_[program.number()];
  auto contents = readDataFileText(bytes);
  if (!contents) {
    run_.broken(program.number(),
                "saves a text that is none of the storage's: " + contents.error());
    return;
  }
  if (!state.step || !lock_.holds(program)) {
    run_.broken(program.number(), "saves without holding the lock");
    return;
  }
  Step& step = *state.step;
  if (!step.wasDisturbed && step.versionAtLock != current().number) {
    step.wasDisturbed = true;
    run_.log.add(Happening::disturbedSample, program.number());
  }
  if (step.isReset && !step.resetIsSaved) {
    checkReset(program, step, *contents);
  } else if (!step.reading) {
    run_.broken(program.number(), "saves before it has read the counters");
  } else if (step.wasDisturbed || step.wasHampered) {
    checkLoosely(program, step, *contents);
  } else {
    checkStrictly(program, state, *contents);
  }
  state.saving = std::make_shared<const RememberedInterfaces>(*std::move(contents));
  state.savingBytes = bytes;
  state.held = state.saving;
  state.heldIsUncertain = false;
}

void FileObserver::replaced(const Turn& program) {
  State& state = states_[program.number()];
  if (state.step && !state.step->wasDisturbed && state.step->versionAtLock != current().number) {
    state.step->wasDisturbed = true;
    run_.log.add(Happening::disturbedSample, program.number());
  }
  checkNothingWentBack(program, state);
  push(state.savingBytes, state.saving);
  state.heldVersion = current().number;
  if (state.step && !state.step->wasDisturbed) state.step->versionAtLock = current().number;
}

void FileObserver::saveEnded(const Turn& program,
                             const std::expected<FileAttributes, std::error_code>& attributes) {
  State& state = states_[program.number()];
  if (!attributes) run_.log.add(Happening::saveFailed, program.number());
  if (!attributes || !state.step) return;
  run_.log.add(Happening::saved, program.number(), static_cast<std::int64_t>(current().number));
  state.step->fileDate = attributes->modificationDate;
  if (state.step->isReset && !state.step->resetIsSaved) {
    state.step->resetIsSaved = true;
  } else {
    state.step->isSaved = true;
  }
}

void FileObserver::unlocked(const Turn& program, bool succeeded) {
  State& state = states_[program.number()];
  if (!state.step) return;
  SampleOutcome outcome = state.step->outcome;
  outcome.isComplete = succeeded && state.step->isSaved;
  outcome.isUndisturbed = !state.step->wasDisturbed && !state.step->wasHampered;
  state.outcomes.push_back(outcome);
  state.step.reset();
}

void FileObserver::abandoned(const Turn& program) {
  State& state = states_[program.number()];
  state.outcomes.push_back({});
  state.step.reset();
}

std::vector<SampleOutcome> FileObserver::takeOutcomes(const Turn& program) {
  State& state = states_[program.number()];
  if (state.step || lock_.isTaking(program)) abandoned(program);
  return std::exchange(state.outcomes, {});
}

const RememberedInterfaces* FileObserver::held(const Turn& program) const {
  const auto found = states_.find(program.number());
  const bool isKnown = found != states_.end() && !found->second.heldIsUncertain;
  return isKnown ? found->second.held.get() : nullptr;
}

void FileObserver::tamperedWith(std::optional<std::string> bytes) {
  Contents contents;
  if (bytes) {
    if (auto read = readDataFileText(*bytes)) {
      contents = std::make_shared<const RememberedInterfaces>(*std::move(read));
    }
  }
  push(std::move(bytes).value_or(""), contents);
}

void FileObserver::push(std::string bytes, Contents contents) {
  versions_.push_back({.number = current().number + 1,
                       .bytes = std::move(bytes),
                       .contents = std::move(contents),
                       .putAt = run_.clock.steadyNow()});
  if (versions_.size() > versionsKept) versions_.pop_front();
}

void FileObserver::resetIfDue(const Turn& program, State& state) {
  Step& step = *state.step;
  if (step.reading || step.isReset || !step.bootDate || !step.fileDate) return;
  if (*step.bootDate <= *step.fileDate) return;
  step.isReset = true;
  state.held = std::make_shared<const RememberedInterfaces>();
  state.heldVersion = current().number;  // which is what is to be forgotten
  step.bases.push_back(state.held);
  const bool isOne = !current().contents || run_.bootedAt >= current().putAt;
  run_.log.add(isOne ? Happening::rebootNoticed : Happening::clockStepTakenForReboot,
               program.number());
}

void FileObserver::checkReset(const Turn& program, Step& step,
                              const RememberedInterfaces& contents) {
  if (!contents.empty() && !step.wasHampered) {
    run_.broken(program.number(), "saved records after a reset");
  }
  if (step.reading)
    run_.broken(program.number(), "noticed a reboot after it had read the counters");
}

void FileObserver::checkStrictly(const Turn& program, State& state,
                                 RememberedInterfaces& contents) {
  const Step& step = *state.step;
  if (current().contents && state.heldVersion != current().number) {
    run_.broken(program.number(), "saves without what stood in the file before");
    return;
  }
  const RememberedInterfaces expected = expectedAfter(*state.held, *step.reading, counting_);
  if (!holdTheSame(contents, expected)) {
    for (const auto& [name, interface] : expected) {
      const auto found = contents.find(name);
      if (found == contents.end() || !found->second.holdsTheSame(interface)) {
        run_.broken(program.number(), "saves other records of " + name + " than the reading gives");
        return;
      }
    }
    run_.broken(program.number(), "saves an interface that nobody has read");
    return;
  }
  for (const auto& [name, interface] : *state.held) {
    const auto lost = trafficLost(interface, expected.find(name)->second);
    if (lost) run_.broken(program.number(), name + ": " + *lost);
  }
  noteWraps(program, *state.held, *step.reading);
  state.step->outcome.bandwidthClass = classOf(step, *state.held, expected);
  contents = expected;
}

void FileObserver::checkLoosely(const Turn& program, const Step& step,
                                RememberedInterfaces& contents) {
  for (auto& [name, interface] : contents) {
    if (!followsFrom(step.bases, *step.reading, counting_, name, interface)) {
      run_.broken(program.number(),
                  "saves records of " + name + " that follow from nothing it has seen");
    }
  }
}

void FileObserver::checkNothingWentBack(const Turn& program, const State& state) {
  const bool mayGoBack = !state.step || state.step->isReset || state.step->wasDisturbed ||
                         state.step->wasHampered || counting_ != Counting::capped;
  if (mayGoBack || !current().contents) return;
  for (const auto& [name, before] : *current().contents) {
    const auto after = state.saving->find(name);
    if (after == state.saving->end()) {
      run_.broken(program.number(), name + " vanished from the file");
      continue;
    }
    const auto back = counterThatWentBack(before.adjusted, after->second.adjusted);
    if (back) run_.broken(program.number(), name + " went back in " + *back);
  }
}

void FileObserver::noteWraps(const Turn& program, const RememberedInterfaces& before,
                             const MachineReading& reading) {
  if (counting_ != Counting::capped) return;
  for (const auto& [name, truth] : reading.truth) {
    const auto old = before.find(name);
    if (old == before.end()) continue;
    if (const int wraps = wrapsBetween(old->second.original, *reading.given.find(name))) {
      run_.log.add(Happening::counterWrapped, program.number(), wraps, name);
    }
    if (old->second.truth && turnedOverUnseen(*old->second.truth, truth)) {
      run_.log.add(Happening::countersWrappedUnseen, program.number(), 0, name);
    }
  }
}

std::optional<BandwidthClassValue> FileObserver::classOf(const Step& step,
                                                         const RememberedInterfaces& before,
                                                         const RememberedInterfaces& after) const {
  if (!step.fileDate) return 0;  // never registered: nothing to compare with
  const auto at = [&](WallTime now) {
    return expectedClass(before, after, *step.reading, now - *step.fileDate);
  };
  const WallTime now = run_.clock.now();
  if (now == step.readAt) return at(now);
  // Each interface was judged at a moment of its own between the two. The longer the interval, the
  // lower the class, but for an interval that is none.
  const bool isKnown = step.readAt > *step.fileDate && at(now) == at(step.readAt);
  return isKnown ? std::optional(at(now)) : std::nullopt;
}

}  // namespace lanternfold::simulation
