// The seam that decides which interface names belong to a family named by a prefix ("en": adapters
// that carry internet traffic, "pdp_ip": cellular data).
//
// The library's own rule is `LiteralInterfaceNaming`: the name begins with the prefix. Only the
// Linux composition injects `LinuxInterfaceNaming`, which widens it by link kind and device.
#pragma once

#include <functional>
#include <string_view>

namespace lanternfold {

class InterfaceNaming {
 public:
  virtual ~InterfaceNaming() = default;

  /// A predicate on names, good for one walk over the interfaces: what it must know of the system
  /// is read at most once, when the first name asks for it. A name that begins with `prefix` always
  /// belongs; an empty prefix takes every name. Never fails: what cannot be read widens nothing.
  [[nodiscard]] virtual std::function<bool(std::string_view name)> matcher(
      std::string_view prefix) const = 0;
};

}  // namespace lanternfold
