#include "Support/Rfc3339Text.h"

#include <array>
#include <ctime>

namespace lanternfold {

std::string rfc3339Text(std::chrono::system_clock::time_point moment) {
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(moment).time_since_epoch();
  const auto wholeSeconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
  const std::time_t seconds = wholeSeconds.count();
  std::tm fields{};
  ::gmtime_r(&seconds, &fields);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.", &fields);
  const std::string milliseconds = std::to_string((sinceEpoch - wholeSeconds).count());
  return std::string(text.data(), length) + std::string(3 - milliseconds.size(), '0') +
         milliseconds + 'Z';
}

}  // namespace lanternfold
