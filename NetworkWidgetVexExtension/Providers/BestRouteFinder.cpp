#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"

#include <chrono>
#include <utility>
#include <vector>

namespace lanternfold {
namespace {

constexpr std::chrono::seconds longestSearch{1};

/// The path lists the interface of the best default route first; without a default route it lists
/// interfaces, too.
std::optional<std::string> bestOf(const NetworkPath& path) {
  if (path.status != PathStatus::satisfied || path.availableInterfaces.empty()) return std::nullopt;
  return path.availableInterfaces.front().name;
}

}  // namespace

struct BestRouteFinder::Search {
  std::unique_ptr<PathMonitor> monitor;  ///< null when the search is over
  std::vector<Completion> completions;

  void end(const std::optional<std::string>& interfaceName) {
    const std::unique_ptr<PathMonitor> ended = std::move(monitor);
    if (!ended) return;
    ended->cancel();
    for (const Completion& completion : std::exchange(completions, {})) completion(interfaceName);
  }
};

void BestRouteFinder::find(Completion completion) {
  if (const auto underWay = latest_.lock(); underWay && underWay->monitor) {
    underWay->completions.push_back(std::move(completion));
    return;
  }
  const auto search = std::make_shared<Search>();
  latest_ = search;
  search->completions.push_back(std::move(completion));
  search->monitor = pathMonitors_.makePathMonitor(std::nullopt);
  search->monitor->setPathUpdateHandler([weak = std::weak_ptr(search)](const NetworkPath& path) {
    if (const auto found = weak.lock()) found->end(bestOf(path));
  });
  search->monitor->start(mainQueue_);
  // The limit holds the search, and with it the monitor.
  mainQueue_.after(longestSearch, [search] { search->end(std::nullopt); });
}

}  // namespace lanternfold
