#include "PlatformLinux/Location/PermissionStoreWatch.h"

#include <utility>

#include "PlatformLinux/Bus/OwnerChanges.h"

namespace lanternfold {
namespace {

constexpr const char* storeName = "org.freedesktop.impl.portal.PermissionStore";
constexpr const char* storeObject = "/org/freedesktop/impl/portal/PermissionStore";
constexpr const char* locationTable = "location";
constexpr const char* locationId = "location";

/// Of the answer to a look: permissions by application, and data that mean nothing here.
PermissionTable tableIn(GVariant* answer) {
  PermissionTable table;
  const VariantPointer entries(g_variant_get_child_value(answer, 0));
  const gsize count = g_variant_n_children(entries.get());
  for (gsize each = 0; each < count; ++each) {
    const VariantPointer entry(g_variant_get_child_value(entries.get(), each));
    const VariantPointer application(g_variant_get_child_value(entry.get(), 0));
    const VariantPointer permissions(g_variant_get_child_value(entry.get(), 1));
    std::vector<std::string>& words =
        table[g_variant_get_string(application.get(), /*length=*/nullptr)];
    const gsize wordCount = g_variant_n_children(permissions.get());
    for (gsize word = 0; word < wordCount; ++word) {
      const VariantPointer text(g_variant_get_child_value(permissions.get(), word));
      words.emplace_back(g_variant_get_string(text.get(), /*length=*/nullptr));
    }
  }
  return table;
}

}  // namespace

PermissionStoreWatch::PermissionStoreWatch(std::shared_ptr<MessageBus> bus,
                                           std::string applicationId,
                                           std::chrono::milliseconds limit, Handler found)
    : bus_(std::move(bus)),
      applicationId_(std::move(applicationId)),
      limit_(limit),
      found_(std::move(found)) {}

/// It listens before the first look, so that no change is missed. A store that went away has
/// nothing to tell; one that comes may have another file.
void PermissionStoreWatch::begin() {
  if (applicationId_.empty()) {
    take(StoredPermission::unobservable);
    return;
  }
  changes_ = bus_->subscribe({.sender = storeName,
                              .path = storeObject,
                              .interface = storeName,
                              .name = "Changed",
                              .firstArgument = locationTable},
                             [weak = weak_from_this()](GVariant* /*what*/) {
                               if (const auto living = weak.lock()) living->lookUp();
                             });
  ownerChanges_ =
      bus_->subscribe(ownerChangesOf(storeName), [weak = weak_from_this()](GVariant* arguments) {
        const auto living = weak.lock();
        if (living && !newOwnerIn(arguments).empty()) living->lookUp();
      });
  lookUp();
}

void PermissionStoreWatch::lookUp() {
  if (std::exchange(isLooking_, true)) {
    looksAgain_ = true;
    return;
  }
  bus_->call(
      {.destination = storeName, .path = storeObject, .interface = storeName, .name = "Lookup"},
      g_variant_new("(ss)", locationTable, locationId), "(a{sas}v)", limit_,
      [weak = weak_from_this()](const MessageBus::Reply& reply) {
        if (const auto living = weak.lock()) living->take(living->storedIn(reply));
      });
}

void PermissionStoreWatch::take(StoredPermission stored) {
  isLooking_ = false;
  known_ = stored;
  found_(stored);
  if (std::exchange(looksAgain_, false)) lookUp();
}

StoredPermission PermissionStoreWatch::storedIn(const MessageBus::Reply& reply) const {
  if (!reply) return storedPermissionAfterError(reply.error(), known_);
  return storedPermissionOf(tableIn(reply->get()), applicationId_);
}

}  // namespace lanternfold
