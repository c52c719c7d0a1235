#include "PlatformLinux/Location/PermissionStoreWatch.h"

#include <utility>

namespace lanternfold {
namespace {

constexpr const char* storeName = "org.freedesktop.impl.portal.PermissionStore";
constexpr const char* storeInterface = storeName;
constexpr const char* locationTable = "location";
constexpr const char* locationId = "location";

/// Whether this is a new owner's first word, by the signal's third argument.
bool hasNewOwner(sdbus::Message& message) {
  try {
    std::string name;
    std::string oldOwner;
    std::string newOwner;
    message >> name >> oldOwner >> newOwner;
    return !newOwner.empty();
  } catch (const sdbus::Error&) {
    return false;
  }
}

/// Whether it is about locations, or cannot be told.
bool isOfLocations(sdbus::Signal& signal) {
  try {
    std::string table;
    signal >> table;
    return table == locationTable;
  } catch (const sdbus::Error&) {
    return true;
  }
}

}  // namespace

PermissionStoreWatch::PermissionStoreWatch(std::shared_ptr<BusOnLoop> bus,
                                           std::string applicationId,
                                           std::chrono::milliseconds limit, Handler found)
    : bus_(std::move(bus)),
      applicationId_(std::move(applicationId)),
      limit_(limit),
      found_(std::move(found)) {}

void PermissionStoreWatch::begin() {
  if (applicationId_.empty()) {
    take(StoredPermission::unobservable);
    return;
  }
  try {
    listen();
  } catch (const sdbus::Error&) {
    take(StoredPermission::unobservable);
    return;
  }
  lookUp();
}

/// Before the first look, so that no change is missed. A store that went away has nothing to tell;
/// one that comes may have another file.
void PermissionStoreWatch::listen() {
  store_ = sdbus::createProxy(bus_->connection(), storeName,
                              "/org/freedesktop/impl/portal/PermissionStore");
  store_->registerSignalHandler(storeInterface, "Changed",
                                [weak = weak_from_this()](sdbus::Signal& signal) {
                                  const auto living = weak.lock();
                                  if (living && isOfLocations(signal)) living->lookUp();
                                });
  store_->finishRegistration();
  const std::string match =
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
      std::string(storeName) + "'";
  ownerChanges_ =
      bus_->connection().addMatch(match, [weak = weak_from_this()](sdbus::Message& message) {
        const auto living = weak.lock();
        if (living && hasNewOwner(message)) living->lookUp();
      });
}

void PermissionStoreWatch::lookUp() {
  if (std::exchange(isLooking_, true)) {
    looksAgain_ = true;
    return;
  }
  try {
    auto call = store_->createMethodCall(storeInterface, "Lookup");
    call << std::string(locationTable) << std::string(locationId);
    store_->callMethod(
        call,
        [weak = weak_from_this()](sdbus::MethodReply& reply, const sdbus::Error* error) {
          if (const auto living = weak.lock()) living->take(living->storedIn(reply, error));
        },
        limit_);
  } catch (const sdbus::Error&) {
    take(known_);
    return;
  }
  bus_->pump();
}

void PermissionStoreWatch::take(StoredPermission stored) {
  isLooking_ = false;
  known_ = stored;
  found_(stored);
  if (std::exchange(looksAgain_, false)) lookUp();
}

StoredPermission PermissionStoreWatch::storedIn(sdbus::MethodReply& reply,
                                                const sdbus::Error* error) const {
  if (error == nullptr) {
    try {
      PermissionTable table;
      reply >> table;
      return storedPermissionOf(table, applicationId_);
    } catch (const sdbus::Error&) {
      return StoredPermission::absent;
    }
  }
  return storedPermissionAfterError(error->getName(), known_);
}

}  // namespace lanternfold
