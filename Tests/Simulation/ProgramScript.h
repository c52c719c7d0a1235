// Decides which programs run: starts recorders and one-shot samples, kills them, ends them, and
// reboots the machine under them.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <optional>
#include <vector>

#include "Tests/Simulation/Installation.h"
#include "Tests/Simulation/OneShotProgram.h"
#include "Tests/Simulation/Profile.h"
#include "Tests/Simulation/RecorderProgram.h"

namespace lanternfold::simulation {

class ProgramScript {
 public:
  /// Both outlive it. The recorders start at once.
  ProgramScript(Installation& installation, const Profile& profile);

  /// Kills everything that still runs, so that every stack is unwound.
  void killAll();

 private:
  /// Where a recorder runs, again and again.
  struct Place {
    RecorderHabits habits;
    std::unique_ptr<RecorderProgram> program;
  };

  void startMissing();
  void startOneShot();
  void killOne();
  void endOne();
  void reboot();
  [[nodiscard]] RecorderProgram* drawRecorder();

  Installation& installation_;
  RunContext& run_;
  std::vector<Place> places_;
  std::list<OneShotProgram> oneShots_;
  bool isDown_ = false;
};

}  // namespace lanternfold::simulation
