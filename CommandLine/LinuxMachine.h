// This machine: the production side of every seam, wired.
//
// Made by: `main`, once. Read by: the commands, as a `Machine`.
#pragma once

#include <memory>

#include "CommandLine/Machine.h"
#include "CommandLine/Program.h"

namespace lanternfold {

/// Main thread only; the network namespace is the one the program was started in.
class LinuxMachine {
 public:
  /// Throws std::system_error when the system lacks what the program needs.
  explicit LinuxMachine(const MachineOptions& options);
  ~LinuxMachine();
  LinuxMachine(const LinuxMachine&) = delete;
  LinuxMachine& operator=(const LinuxMachine&) = delete;

  [[nodiscard]] const Machine& machine() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace lanternfold
