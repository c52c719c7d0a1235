// Why the public services told less than they might have, in one line for the user.
//
// Made by: the wiring of the monitor. Written by: what it puts around the resolvers.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Platform/DiagnosticLog.h"

namespace lanternfold {

/// The outcome of every service that one resolution has asked. Any thread.
class ServiceFaults {
 public:
  /// `diagnostics` outlives it.
  explicit ServiceFaults(DiagnosticLog& diagnostics) : diagnostics_(diagnostics) {}

  /// Begins another resolution, which may have no need to ask every service.
  void begin();

  /// `error` is empty when `service`, a name for people, has answered. A request that was cancelled
  /// says nothing about it.
  void note(std::string_view service, const std::error_code& error);

  /// Writes a line when there is something to say that was not the last thing said.
  void tell();

 private:
  // With mutex_ held.
  [[nodiscard]] std::string line() const;
  [[nodiscard]] std::string remedies() const;

  DiagnosticLog& diagnostics_;
  std::mutex mutex_;
  // Guarded by mutex_. In the order in which the services failed.
  std::vector<std::pair<std::string, std::error_code>> faults_;
  std::string told_;
};

/// `resolver`, whose every outcome is noted as one of `service`.
[[nodiscard]] std::shared_ptr<PublicInfoResolver> notingFaults(
    std::shared_ptr<PublicInfoResolver> resolver, std::string service,
    std::shared_ptr<ServiceFaults> faults);

/// `resolver`, whose resolutions begin the noting anew and tell the faults before they are
/// complete.
[[nodiscard]] std::shared_ptr<InternetInfoResolver> tellingFaults(
    std::shared_ptr<InternetInfoResolver> resolver, std::shared_ptr<ServiceFaults> faults);

}  // namespace lanternfold
