#include "CommandLine/DateText.h"

#include <array>
#include <ctime>

namespace lanternfold {

std::string localDateText(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds =
      std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
  std::tm fields{};
  ::localtime_r(&seconds, &fields);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &fields)};
}

}  // namespace lanternfold
