#include "Wiring/PrintableText.h"

#include <glib.h>

#include "Support/EscapedText.h"

namespace lanternfold {

std::string printable(std::string_view text) { return escapedText(text); }

std::string inQuotes(std::string_view text) {
  constexpr int mostCharacters = 64;
  std::string_view rest = text;
  for (int count = 0; count < mostCharacters && !rest.empty(); ++count) {
    rest.remove_prefix(firstCharacter(rest).bytes.size());
  }
  const std::string shown = escapedText(text.substr(0, text.size() - rest.size()));
  return '"' + shown + (rest.empty() ? "\"" : "\u2026\"");
}

std::size_t terminalWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const TextCharacter character = firstCharacter(text);
    if (!character.isValid || g_unichar_iszerowidth(character.codePoint) == 0) {
      width += character.isValid && g_unichar_iswide(character.codePoint) != 0 ? 2U : 1U;
    }
    text.remove_prefix(character.bytes.size());
  }
  return width;
}

}  // namespace lanternfold
