#include "PlatformLinux/Adapters/ScopedAddress.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include "PlatformLinux/Netlink/InterfaceName.h"

namespace lanternfold {

std::optional<std::string> interfaceOfScopedAddress(std::string_view text) {
  const std::size_t separator = text.find('%');
  if (separator == text.npos) return std::nullopt;
  const std::string address(text.substr(0, separator));
  const std::string_view name = text.substr(separator + 1);
  in_addr parsed{};
  const bool isAddress =
      address.find('\0') == address.npos && inet_pton(AF_INET, address.c_str(), &parsed) == 1;
  if (!isAddress || !isKernelInterfaceName(name) || name.contains('%')) return std::nullopt;
  return std::string(name);
}

}  // namespace lanternfold
