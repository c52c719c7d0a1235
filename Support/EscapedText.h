// Text from outside, made safe for terminals, pictures and documents.
//
// Read by: whoever shows names that anybody may have chosen: of networks, of interfaces.
#pragma once

#include <string>
#include <string_view>

namespace lanternfold {

/// What a text begins with: one character, or one byte that begins no valid UTF-8.
struct TextCharacter {
  std::string_view bytes;  ///< never empty
  char32_t codePoint = 0;  ///< 0 for a byte that is no character
  bool isValid = false;
};

/// `text` is not empty; the bytes are a view of it.
[[nodiscard]] TextCharacter firstCharacter(std::string_view text);

/// UTF-8. Bytes that are none are written as "\xNN" with lower-case digits, and so are those of
/// control characters, of characters that end a line, and of the marks that turn the writing
/// direction, which could make one name read as another. Everything else stays as it is, a
/// backslash too: the text is for readers, and cannot be turned back into the bytes. Markup is the
/// reader's concern.
[[nodiscard]] std::string escapedText(std::string_view text);

}  // namespace lanternfold
