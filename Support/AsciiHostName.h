// Host names as the domain name system carries them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// `name`, of which letters outside ASCII are written as Punycode by the rules of UTS 46
/// ("xn--mnchen-3ya.example"). A name in ASCII stays as it is, whatever stands in it. None when the
/// name is no UTF-8, or its letters may not stand in a name. Any thread.
[[nodiscard]] std::optional<std::string> asciiHostName(std::string_view name);

}  // namespace lanternfold
