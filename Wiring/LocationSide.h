// Who decides on the location for this program: the user alone, or a sandbox's portal.
//
// Made by: `LinuxMachine` and the host's machine, one per program. Read by: the commands, through
// `Machine`, and the host's windows.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/FileSystem.h"
#include "Platform/LocationManager.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Location/ConsentAuthority.h"
#include "PlatformLinux/Location/ConsentRecord.h"
#include "PlatformLinux/Location/Sandbox.h"
#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

/// Everything that it is made of outlives it.
class LocationSide {
 public:
  struct Surroundings {
    const DataDirectory& directory;
    FileSystem& files;
    EventLoop& loop;
    Dispatch& dispatch;
    DiagnosticLog& log;
    std::filesystem::path sandboxFile = "/.flatpak-info";  ///< stands in every sandbox
  };

  explicit LocationSide(const Surroundings& surroundings);

  [[nodiscard]] LocationConsent& consent() { return *consent_; }
  [[nodiscard]] ConsentRecord& record() { return record_; }
  /// Null outside a sandbox.
  [[nodiscard]] ConsentAuthority* authority() { return authority_; }

 private:
  const std::optional<Sandbox> sandbox_;
  ConsentRecord record_;
  std::unique_ptr<LocationConsent> consent_;
  ConsentAuthority* authority_ = nullptr;
};

}  // namespace lanternfold
