#include "NetworkWidgetVexExtension/Views/TimeOfDrawing.h"

#include <array>
#include <ctime>

#include "Support/TextPlaceholders.h"

namespace lanternfold {

std::string timeOfDrawing(std::chrono::system_clock::time_point now, const StringTable& strings) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 16> clock{};
  const std::size_t length = std::strftime(clock.data(), clock.size(), "%H:%M", &local);
  return fillPlaceholders(strings.localized("Today, %@"), {{clock.data(), length}});
}

}  // namespace lanternfold
