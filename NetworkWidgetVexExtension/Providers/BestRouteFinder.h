// Finds the interface of the best default route without making anybody wait.
//
// Made by: whoever chooses an adapter for the user. Read by: the adapter widget's content, the
// host's list of adapters.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Dispatch.h"
#include "Platform/PathMonitor.h"

namespace lanternfold {

/// Main queue. Its searches outlive it.
class BestRouteFinder {
 public:
  using Completion = std::function<void(std::optional<std::string> interfaceName)>;

  /// Both outlive the finder and its searches.
  BestRouteFinder(PathMonitorFactory& pathMonitors, DispatchQueue& mainQueue)
      : pathMonitors_(pathMonitors), mainQueue_(mainQueue) {}

  /// Completes exactly once, on the main queue, after this has returned: with the interface's name,
  /// or with none when there is no default route or the system does not say within a second. Asked
  /// while a search is under way it waits for that one, so that many questions at once cost no more
  /// descriptors than one.
  void find(Completion completion);

 private:
  struct Search;

  PathMonitorFactory& pathMonitors_;
  DispatchQueue& mainQueue_;
  std::weak_ptr<Search> latest_;
};

}  // namespace lanternfold
