// Tells a manager's handler of every change of the status, by whomever.
//
// Made by: the managers of `LinuxLocationConsent` and `PortalLocationConsent`, one for each.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/LocationManager.h"
#include "PlatformLinux/Location/ConsentRecord.h"
#include "PlatformLinux/Location/FileWatch.h"
#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

/// Compares the status with what it was, and tells the main queue. It begins with what its maker
/// saw, so that no change since then is missed. Any thread.
class StatusComparison {
 public:
  using Status = std::function<std::int32_t()>;
  using ChangeHandler = LocationConsent::ChangeHandler;

  StatusComparison(Status status, DispatchQueue& queue, std::weak_ptr<const ChangeHandler> handler);

  void compare();

 private:
  const Status status_;
  DispatchQueue& queue_;
  const std::weak_ptr<const ChangeHandler> handler_;
  std::mutex mutex_;
  std::int32_t known_;  ///< guarded by mutex_
};

/// What both sides' managers listen with.
struct ConsentSurroundings {
  const ConsentRecord& record;
  EventLoop& loop;
  Dispatch& dispatch;
  DiagnosticLog& log;
};

/// Main queue. Listens to the record's file on the event loop; whoever knows of other changes has
/// the comparison made.
class ConsentWatch {
 public:
  /// Everything in `surroundings` outlives the watch, as does what `status` reads.
  ConsentWatch(const ConsentSurroundings& surroundings, StatusComparison::Status status,
               LocationConsent::ChangeHandler handler);
  /// No call of the handler comes afterwards.
  ~ConsentWatch();
  ConsentWatch(const ConsentWatch&) = delete;
  ConsentWatch& operator=(const ConsentWatch&) = delete;

  [[nodiscard]] std::weak_ptr<StatusComparison> comparison() const { return comparison_; }

 private:
  EventLoop& loop_;
  const std::shared_ptr<const LocationConsent::ChangeHandler> handler_;
  std::shared_ptr<StatusComparison> comparison_;
  std::shared_ptr<FileWatch> watch_;  ///< null without a file
};

}  // namespace lanternfold
