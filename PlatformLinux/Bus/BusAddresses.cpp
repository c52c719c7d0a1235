#include "PlatformLinux/Bus/BusAddresses.h"

#include <cstdlib>

namespace lanternfold {

std::optional<std::string> sessionBusAddress() {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): it is written before a thread of ours reads it
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address != nullptr && *address != '\0') return address;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): it is written before a thread of ours reads it
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder != '/') return std::nullopt;
  return "unix:path=" + std::string(folder) + "/bus";
}

std::string systemBusAddress() {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): it is written before a thread of ours reads it
  const char* address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  if (address != nullptr && *address != '\0') return address;
  return "unix:path=/run/dbus/system_bus_socket";
}

}  // namespace lanternfold
