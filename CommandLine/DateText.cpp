#include "CommandLine/DateText.h"

#include <array>
#include <ctime>

namespace lanternfold {
namespace {

std::string formatted(const std::tm& fields, const char* format) {
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &fields)};
}

std::time_t secondsOf(std::chrono::system_clock::time_point moment) {
  return std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
}

}  // namespace

std::string rfc3339Text(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds = secondsOf(moment);
  std::tm fields{};
  ::gmtime_r(&seconds, &fields);
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(moment).time_since_epoch();
  const std::string milliseconds =
      std::to_string((sinceEpoch - std::chrono::seconds(seconds)).count());
  return formatted(fields, "%Y-%m-%dT%H:%M:%S.") + std::string(3 - milliseconds.size(), '0') +
         milliseconds + 'Z';
}

std::string localDateText(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds = secondsOf(moment);
  std::tm fields{};
  ::localtime_r(&seconds, &fields);
  return formatted(fields, "%Y-%m-%d %H:%M:%S");
}

}  // namespace lanternfold
