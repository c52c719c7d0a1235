#include "Rendering/IsolatedAddresses.h"

#include <algorithm>
#include <cstddef>

namespace lanternfold {
namespace {

constexpr std::string_view beginIsolate = "\u2066";
constexpr std::string_view endIsolate = "\u2069";

bool isHexadecimal(char each) {
  return (each >= '0' && each <= '9') || (each >= 'a' && each <= 'f') ||
         (each >= 'A' && each <= 'F');
}

/// The dot and the slash are those of "::ffff:192.0.2.1/96".
bool isAddress(std::string_view word) {
  const auto isPart = [](char each) {
    return isHexadecimal(each) || each == ':' || each == '.' || each == '/';
  };
  return std::ranges::all_of(word, isPart) && std::ranges::any_of(word, isHexadecimal) &&
         std::ranges::count(word, ':') >= 2;
}

/// Whether `text` may have a letter of a script written from right to left: the first of them, of
/// Hebrew, begins with this byte.
bool mayRunToTheLeft(std::string_view text) {
  return std::ranges::any_of(text,
                             [](char each) { return static_cast<unsigned char>(each) >= 0xD6; });
}

}  // namespace

std::string isolatedAddresses(std::string_view text) {
  if (!mayRunToTheLeft(text) || text.find(':') == std::string_view::npos) return std::string(text);
  std::string isolated;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    if (isAddress(word)) {
      isolated.append(beginIsolate).append(word).append(endIsolate);
    } else {
      isolated.append(word);
    }
    text.remove_prefix(end);
    const std::size_t spaces = std::min(text.find_first_not_of(' '), text.size());
    isolated.append(text.substr(0, spaces));
    text.remove_prefix(spaces);
  }
  return isolated;
}

}  // namespace lanternfold
