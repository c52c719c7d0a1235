// Tells addresses and host names apart in what a user types as a target. Pure.
#pragma once

#include <optional>
#include <string_view>

#include "NetBase/AddressType.h"

namespace lanternfold {

class AddressTypeGuesser {
 public:
  virtual ~AddressTypeGuesser() = default;
  /// None for a text that can be neither.
  [[nodiscard]] virtual std::optional<AddressType> type(std::string_view text) const = 0;
};

/// Stateless; any thread. Whatever is no address and holds no character that separates the parts of
/// a URL counts as a host name, also "", "1.2.3" and what `HostnameValidator` refuses.
class StandardAddressTypeGuesser final : public AddressTypeGuesser {
 public:
  [[nodiscard]] std::optional<AddressType> type(std::string_view text) const override;
};

}  // namespace lanternfold
