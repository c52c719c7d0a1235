#include "PlatformLinux/Adapters/ScopedAddress.h"

#include <algorithm>
#include <arpa/inet.h>
#include <net/if.h>

namespace lanternfold {

namespace {

bool isLinkName(std::string_view name) {
  return !name.empty() && name.size() < IFNAMSIZ && name != "." && name != ".." &&
         std::none_of(
             name.begin(), name.end(),
             [](char c) {
               return static_cast<unsigned char>(c) <= ' ' || c == '/' || c == '%' || c == 0x7F;
             });
}

}  // namespace

std::optional<std::string> interfaceOfScopedAddress(std::string_view text) {
  const std::size_t separator = text.find('%');
  if (separator == text.npos) return std::nullopt;
  const std::string address(text.substr(0, separator));
  const std::string_view name = text.substr(separator + 1);
  in_addr parsed{};
  const bool isAddress =
      address.find('\0') == address.npos && inet_pton(AF_INET, address.c_str(), &parsed) == 1;
  if (!isAddress || !isLinkName(name)) return std::nullopt;
  return std::string(name);
}

}  // namespace lanternfold
