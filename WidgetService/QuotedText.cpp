#include "WidgetService/QuotedText.h"

#include "Support/EscapedText.h"

namespace lanternfold {

std::string quotedText(std::string_view text) {
  std::size_t shown = 0;
  while (shown < text.size()) {
    const std::size_t next = firstCharacter(text.substr(shown)).bytes.size();
    if (shown + next > longestQuotedBytes) break;
    shown += next;
  }
  const std::string_view ellipsis = shown < text.size() ? "…" : "";
  return '"' + escapedText(text.substr(0, shown)).append(ellipsis) + '"';
}

}  // namespace lanternfold
