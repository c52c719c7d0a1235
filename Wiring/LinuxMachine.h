// This machine: the production side of every seam, wired.
//
// Made by: `main`, once. Read by: the commands, as a `Machine`.
#pragma once

#include <memory>

#include "Wiring/Machine.h"
#include "Wiring/MachineOptions.h"
#include "Wiring/RelayedConsent.h"

namespace lanternfold {

class EventLoop;

/// Main thread only; the network namespace is the one the program was started in.
class LinuxMachine {
 public:
  /// Throws std::system_error when the system lacks what the program needs.
  explicit LinuxMachine(const MachineOptions& options);
  ~LinuxMachine();
  LinuxMachine(const LinuxMachine&) = delete;
  LinuxMachine& operator=(const LinuxMachine&) = delete;

  [[nodiscard]] const Machine& machine() const;

  /// What `machine` has for the user's consent.
  [[nodiscard]] RelayedConsent& consent();
  /// On which whatever listens to the system hangs; what hangs on it goes before this does.
  [[nodiscard]] EventLoop& eventLoop();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace lanternfold
