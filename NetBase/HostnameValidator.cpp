#include "NetBase/HostnameValidator.h"

#include <algorithm>
#include <ranges>

namespace lanternfold {

bool HostnameValidator::validate(std::string_view name) const {
  // Splitting an empty text gives no label at all.
  return !name.empty() && std::ranges::all_of(std::views::split(name, '.'), [this](auto label) {
    return domainLabelRegex.matches(std::string_view(label));
  });
}

}  // namespace lanternfold
