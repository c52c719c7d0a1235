#include "HostProgram/Links/BandwidthLink.h"

#include <ranges>

namespace lanternfold {

bool asksForMiniMonitor(std::string_view url) {
  url = url.substr(0, url.find('#'));
  const std::size_t question = url.find('?');
  if (question == std::string_view::npos) return false;
  const std::string_view query = url.substr(question + 1);
  for (const auto parameter : std::views::split(query, '&')) {
    if (std::string_view(parameter.begin(), parameter.end()) == "mini=1") return true;
  }
  return false;
}

}  // namespace lanternfold
