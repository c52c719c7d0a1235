// What the permission store has of this application's location, now and after each change.
//
// Made by: `PortalConversations`. Internal to this folder: it brings in GLib.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "PlatformLinux/Bus/MessageBus.h"
#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

/// Everything on the bus's thread.
///
/// Inside a sandbox the bus usually shows nobody of that name. A store that is there and does not
/// answer, or answers nonsense, counts as one without a decision; one that has answered and then
/// falls silent stands by its last answer.
class PermissionStoreWatch : public std::enable_shared_from_this<PermissionStoreWatch> {
 public:
  using Handler = std::function<void(StoredPermission)>;

  /// `found` is called after every look, not after the destruction.
  PermissionStoreWatch(std::shared_ptr<MessageBus> bus, std::string applicationId,
                       std::chrono::milliseconds limit, Handler found);
  PermissionStoreWatch(const PermissionStoreWatch&) = delete;
  PermissionStoreWatch& operator=(const PermissionStoreWatch&) = delete;

  /// Once; the first look is over within the limit.
  void begin();

 private:
  void lookUp();
  void take(StoredPermission stored);
  [[nodiscard]] StoredPermission storedIn(const MessageBus::Reply& reply) const;

  const std::shared_ptr<MessageBus> bus_;
  const std::string applicationId_;
  const std::chrono::milliseconds limit_;
  const Handler found_;
  std::unique_ptr<MessageBus::Subscription> changes_;
  std::unique_ptr<MessageBus::Subscription> ownerChanges_;
  StoredPermission known_ = StoredPermission::unobservable;
  bool isLooking_ = false;
  bool looksAgain_ = false;  ///< something has changed during the look
};

}  // namespace lanternfold
