#include "WidgetService/QuotedText.h"

#include "Support/EscapedText.h"

namespace lanternfold {

std::string_view beginningOf(std::string_view text, std::size_t longestBytes) {
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t next = firstCharacter(text.substr(end)).bytes.size();
    if (end + next > longestBytes) break;
    end += next;
  }
  return text.substr(0, end);
}

std::string quotedText(std::string_view text) {
  const std::string_view shown = beginningOf(text, longestQuotedBytes);
  return '"' + escapedText(shown) + (shown.size() < text.size() ? "…\"" : "\"");
}

}  // namespace lanternfold
