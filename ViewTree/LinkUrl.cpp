#include "ViewTree/LinkUrl.h"

#include <algorithm>

namespace lanternfold {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexadecimal(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isScheme(std::string_view text) {
  if (text.empty() || !isLetter(text.front())) return false;
  return std::ranges::all_of(
      text, [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; });
}

bool isUrlCharacter(char c) {
  constexpr std::string_view others = "-._~:/?#[]@!$&'()*+,;=";
  return isLetter(c) || isDigit(c) || others.contains(c);
}

}  // namespace

bool isLinkUrl(std::string_view url) {
  const std::size_t colon = url.find(':');
  if (url.size() > longestLinkUrl || colon == std::string_view::npos) return false;
  std::string_view rest = url.substr(colon + 1);
  if (!isScheme(url.substr(0, colon)) || rest.empty()) return false;
  while (!rest.empty()) {
    const bool isEscape =
        rest.size() > 2 && rest[0] == '%' && isHexadecimal(rest[1]) && isHexadecimal(rest[2]);
    if (!isEscape && !isUrlCharacter(rest.front())) return false;
    rest.remove_prefix(isEscape ? 3 : 1);
  }
  return true;
}

}  // namespace lanternfold
