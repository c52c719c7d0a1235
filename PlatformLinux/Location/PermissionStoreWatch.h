// What the permission store has of this application's location, now and after each change.
//
// Made by: `BusLocationPortal`. Internal to this folder: it brings in sdbus-c++.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "PlatformLinux/Location/BusOnLoop.h"
#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

/// Everything on the loop's thread. It is destroyed by a post to the loop, not by its handler.
///
/// Inside a sandbox the bus usually shows nobody of that name. A store that is there and does not
/// answer, or answers nonsense, counts as one without a decision; one that has answered and then
/// falls silent stands by its last answer.
class PermissionStoreWatch : public std::enable_shared_from_this<PermissionStoreWatch> {
 public:
  using Handler = std::function<void(StoredPermission)>;

  /// `found` is called after every look.
  PermissionStoreWatch(std::shared_ptr<BusOnLoop> bus, std::string applicationId,
                       std::chrono::milliseconds limit, Handler found);
  PermissionStoreWatch(const PermissionStoreWatch&) = delete;
  PermissionStoreWatch& operator=(const PermissionStoreWatch&) = delete;

  /// Once; the first look is over within the limit.
  void begin();

 private:
  void listen();
  void lookUp();
  void take(StoredPermission stored);
  [[nodiscard]] StoredPermission storedIn(sdbus::MethodReply& reply,
                                          const sdbus::Error* error) const;

  const std::shared_ptr<BusOnLoop> bus_;
  const std::string applicationId_;
  const std::chrono::milliseconds limit_;
  const Handler found_;
  std::unique_ptr<sdbus::IProxy> store_;
  sdbus::Slot ownerChanges_;
  StoredPermission known_ = StoredPermission::unobservable;
  bool isLooking_ = false;
  bool looksAgain_ = false;  ///< something has changed during the look
};

}  // namespace lanternfold
