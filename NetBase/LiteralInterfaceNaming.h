// The library's rule of interface names: a name belongs to a prefix when it begins with it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Platform/InterfaceNaming.h"

namespace lanternfold {

/// Stateless; any thread.
class LiteralInterfaceNaming final : public InterfaceNaming {
 public:
  [[nodiscard]] std::function<bool(std::string_view name)> matcher(
      std::string_view prefix) const override {
    return
        [prefix = std::string(prefix)](std::string_view name) { return name.starts_with(prefix); };
  }
};

}  // namespace lanternfold
