#include "PlatformLinux/System/UdevHardwareDatabase.h"

#include <libudev.h>
#include <memory>
#include <string>

namespace lanternfold {

namespace {

struct Release {
  void operator()(udev* context) const { udev_unref(context); }
  void operator()(udev_hwdb* database) const { udev_hwdb_unref(database); }
};

std::string valueOf(udev_list_entry* properties, const char* name) {
  udev_list_entry* const entry = udev_list_entry_get_by_name(properties, name);
  const char* const value = entry == nullptr ? nullptr : udev_list_entry_get_value(entry);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

std::optional<HardwareNames> UdevHardwareDatabase::namesFor(std::string_view modalias) const {
  const std::unique_ptr<udev, Release> context(udev_new());
  const std::unique_ptr<udev_hwdb, Release> database(
      context == nullptr ? nullptr : udev_hwdb_new(context.get()));
  if (database == nullptr) {
    return std::nullopt;
  }
  const std::string key(modalias);
  udev_list_entry* const properties =
      udev_hwdb_get_properties_list_entry(database.get(), key.c_str(), 0);
  HardwareNames names{.vendor = valueOf(properties, "ID_VENDOR_FROM_DATABASE"),
                      .model = valueOf(properties, "ID_MODEL_FROM_DATABASE")};
  if (names.vendor.empty() && names.model.empty()) {
    return std::nullopt;
  }
  return names;
}

}  // namespace lanternfold
