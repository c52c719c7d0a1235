#include "Support/TextPlaceholders.h"

namespace lanternfold {

std::string fillPlaceholders(std::string_view format,
                             std::initializer_list<std::string_view> arguments) {
  constexpr std::string_view placeholder = "%@";
  std::string result;
  for (const std::string_view argument : arguments) {
    const auto position = format.find(placeholder);
    if (position == std::string_view::npos) break;
    result += format.substr(0, position);
    result += argument;
    format.remove_prefix(position + placeholder.size());
  }
  result += format;
  return result;
}

}  // namespace lanternfold
