// Where a text may be cut or broken into lines, by the rules of Unicode and independent of the
// user's language.
//
// Pure functions, any thread. Used by: whoever makes texts fit their place.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace lanternfold {

/// The offsets in bytes between the characters of `text` as a reader sees them: letters with their
/// accents, syllables, emoji made of several and flags stay whole. 0 and the end are among them; of
/// an empty text only 0. `text` is valid UTF-8.
[[nodiscard]] std::vector<std::size_t> characterBreaks(std::string_view text);

/// The offsets in bytes at which a new line may begin: behind spaces and hyphens, between the
/// syllables of scripts without spaces. 0 and the end are among them, as above.
[[nodiscard]] std::vector<std::size_t> lineBreaks(std::string_view text);

}  // namespace lanternfold
