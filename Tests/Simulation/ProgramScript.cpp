#include "Tests/Simulation/ProgramScript.h"

#include "Tests/Simulation/Repetition.h"

namespace lanternfold::simulation {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

ProgramScript::ProgramScript(Installation& installation, const Profile& profile)
    : installation_(installation), run_(installation.run) {
  const int recorders = profile.hasSecondRecorder ? 2 : 1;
  for (int place = 0; place < recorders; ++place) {
    places_.push_back({.habits = {.isAdaptive = run_.random.chance(0.85),
                                  .meanTimeBetweenUses = hours(run_.random.between(1, 24)),
                                  .isSetByHand = profile.isSetByHand},
                       .program = nullptr});
  }
  startMissing();
  // Whoever has ended starts again within a quarter of an hour, as under a service manager.
  repeat(run_, minutes(15), [this] { startMissing(); });
  if (profile.hasOneShots) repeat(run_, hours(3), [this] { startOneShot(); });
  repeat(run_, hours(90), [this] { endOne(); });
  if (profile.kills) repeat(run_, hours(24), [this] { killOne(); });
  if (profile.reboots) repeat(run_, hours(100), [this] { reboot(); });
}

void ProgramScript::killAll() {
  for (Place& place : places_) {
    if (place.program) place.program->turn().kill();
  }
  for (OneShotProgram& program : oneShots_) program.turn().kill();
}

void ProgramScript::startMissing() {
  std::erase_if(oneShots_, [](OneShotProgram& program) { return program.turn().hasEnded(); });
  if (isDown_) return;
  for (Place& place : places_) {
    if (place.program && !place.program->turn().hasEnded()) continue;
    place.program = std::make_unique<RecorderProgram>(installation_, place.habits);
    place.program->begin();
  }
}

void ProgramScript::startOneShot() {
  if (isDown_) return;
  OneShotProgram& program = oneShots_.emplace_back(installation_);
  if (run_.random.chance(0.01)) program.turn().killAfter(run_.random.below(60));
  program.begin();
}

void ProgramScript::killOne() {
  RecorderProgram* program = drawRecorder();
  if (!program) return;
  if (run_.random.chance(0.3)) {
    program->turn().kill();
  } else {
    program->turn().killAfter(run_.random.below(80));
  }
}

void ProgramScript::endOne() {
  if (RecorderProgram* program = drawRecorder()) program->askToEnd();
}

void ProgramScript::reboot() {
  if (isDown_) return;
  isDown_ = true;
  killAll();
  const bool loses = run_.random.chance(0.2);  // a clock without a battery
  const auto lost = run_.random.between(hours(1), hours(200));
  const auto downTime = run_.random.between(seconds(20), hours(12));
  run_.scheduler.after(downTime, [this, loses, lost] {
    if (loses) {
      run_.log.add(Happening::wallClockWentBack, 0, lost.count());
      run_.clock.stepWallClock(-lost);
      run_.scheduler.after(run_.random.between(seconds(1), hours(2)), [this, lost] {
        run_.log.add(Happening::wallClockWentForward, 0, lost.count());
        run_.clock.stepWallClock(lost);
      });
    }
    run_.log.add(Happening::machineBooted);
    installation_.machine.boot();
    run_.bootedAt = run_.clock.steadyNow();
    isDown_ = false;
    startMissing();
  });
}

RecorderProgram* ProgramScript::drawRecorder() {
  RecorderProgram* program = run_.random.oneOf(places_).program.get();
  return program && !program->turn().hasEnded() ? program : nullptr;
}

}  // namespace lanternfold::simulation
