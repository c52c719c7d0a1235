// The host's part of this machine: the production side of every seam that it needs, wired, and the
// desk over them.
//
// Made by: `runHostProgram`, once. A `LinuxMachine` has far more than a resident program should.
#pragma once

#include <memory>
#include <vector>

#include "HostProgram/HostCommandLine.h"
#include "HostProgram/HostEnvironment.h"
#include "HostProgram/HostMessages.h"
#include "HostProgram/HostServices.h"

namespace lanternfold {

/// Main thread, which runs GLib's default main context.
class HostMachine {
 public:
  /// `log` and `messages`, which gets what the extension prints, outlive the machine. Throws
  /// std::system_error when the system lacks what the program needs.
  HostMachine(const HostChoice& choice, const UserLanguage& language, DiagnosticLog& log,
              HostMessages& messages, std::vector<GivenVariable> givenVariables);
  ~HostMachine();
  HostMachine(const HostMachine&) = delete;
  HostMachine& operator=(const HostMachine&) = delete;

  [[nodiscard]] const HostServices& services() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace lanternfold
