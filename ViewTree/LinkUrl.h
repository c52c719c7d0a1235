// Which URLs a link of a view may have.
//
// Pure function. Used by: the functions that make views, the archive of views.
#pragma once

#include <cstddef>
#include <string_view>

namespace lanternfold {

inline constexpr std::size_t longestLinkUrl = 2048;

/// Whether `url` is an absolute URL by its form (RFC 3986): a scheme, a colon, and then only
/// characters that a URL may have. Says nothing of what the scheme would open: that is for the host
/// to judge.
[[nodiscard]] bool isLinkUrl(std::string_view url);

}  // namespace lanternfold
