#include "Support/AsciiCase.h"

#include <algorithm>

namespace lanternfold {

std::string asciiLowercased(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
  });
  return result;
}

std::string asciiUppercased(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
  });
  return result;
}

}  // namespace lanternfold
