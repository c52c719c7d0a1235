#include "Support/Utf8.h"

#include <algorithm>

namespace lanternfold {
namespace {

/// Whether the byte goes on with a character that an earlier one began.
bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string_view cutBetweenCharacters(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) return text;
  std::size_t end = longest;
  while (end > 0 && isContinuation(text[end])) --end;
  return text.substr(0, end);
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return !isContinuation(byte); }));
}

}  // namespace lanternfold
