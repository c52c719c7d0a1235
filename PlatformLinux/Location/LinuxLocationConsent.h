// The production side of `LocationConsent` outside a sandbox: the user's own record.
//
// Made by: the composition, one per program. Read by: whatever shows Wi-Fi names or asks to.
#pragma once

#include <functional>
#include <memory>

#include "Platform/LocationManager.h"
#include "PlatformLinux/Location/ConsentWatch.h"

namespace lanternfold {

/// Each look reads the record anew. Managers listen on the event loop for changes of the file by
/// whomever, without a thread of their own. Any thread.
class LinuxLocationConsent final : public LocationConsent {
 public:
  /// Has the user asked, who answers through the record; returns at once. Called on the thread of
  /// the request, and only while nothing is determined.
  using Ask = std::function<void(bool whenInUse)>;

  /// All references outlive the consent and every manager that it made. Without `ask` a request
  /// does nothing: asking is a host's business.
  LinuxLocationConsent(const ConsentRecord& record, EventLoop& loop, Dispatch& dispatch,
                       DiagnosticLog& log, Ask ask = nullptr);

  [[nodiscard]] std::int32_t authorizationStatus() const override;
  [[nodiscard]] std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) override;

 private:
  const ConsentSurroundings surroundings_;
  const Ask ask_;
};

}  // namespace lanternfold
