// The bandwidth monitor without its window: reads the counters once a second while somebody looks,
// and knows which adapter is shown.
//
// Made by: the host's composition. Seen by: the monitor's window.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/RepeatingTimer.h"
#include "Platform/StringTable.h"
#include "WidgetHost/Bandwidth/BandwidthHistory.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorState.h"

namespace lanternfold {

/// Everything on the main queue.
class BandwidthMonitorModel {
 public:
  /// All of it outlives the model; `clock` is the one that the queue's delays follow.
  struct Surroundings {
    ConnectionMetricsReader& counters;
    InterfaceResolver& interfaces;
    BestRouteFinder& bestRoutes;
    DispatchQueue& mainQueue;
    const Clock& clock;
    const StringTable& strings;
  };

  explicit BandwidthMonitorModel(const Surroundings& surroundings);
  ~BandwidthMonitorModel();
  BandwidthMonitorModel(const BandwidthMonitorModel&) = delete;
  BandwidthMonitorModel& operator=(const BandwidthMonitorModel&) = delete;

  /// Called whenever the state has changed, and never while nobody looks; an empty function ends
  /// it. It may call anything here, and must not destroy the model.
  void setObserver(std::function<void()> changed);

  [[nodiscard]] const BandwidthMonitorState& state() const { return state_; }

  /// Somebody looks, or does not any more. Nothing is read meanwhile, and while the session is
  /// locked; what is measured afterwards stands behind a gap.
  void setShown(bool isShown);
  void setLocked(bool isLocked);

  /// The machine has slept.
  void resumed();
  /// The system's way to the network has changed: another adapter may be the best one.
  void networkPathChanged();

  /// One of `state().adapters`; others are ignored.
  void choose(std::string_view identifier);

 private:
  void follow();
  void tick();
  void readCounters();
  void askForAdapters();
  void takeAdapters(const std::optional<std::string>& bestRoute);
  /// Makes the state anew from what is known, and tells of it.
  void update();
  [[nodiscard]] std::vector<NetworkAdapter> offeredAdapters() const;
  [[nodiscard]] const BasicInterface* measuredInterface() const;
  [[nodiscard]] std::string nameOfMeasured() const;
  [[nodiscard]] BandwidthAvailability availability(const AdapterTraffic& traffic) const;

  Surroundings surroundings_;
  StandardConnectionBandwidthAnalyzer analyzer_;
  BandwidthHistory history_;
  BandwidthMonitorState state_;
  std::function<void()> changed_;

  bool isShown_ = false;
  bool isLocked_ = false;
  std::optional<RepeatingTimer> timer_;

  std::optional<std::vector<BasicInterface>> interfaces_;  // none before they are known
  std::optional<std::string> bestRoute_;
  /// Of the interfaces that the last reading had; another table is another set of interfaces.
  std::shared_ptr<const ConnectionMetricsMap::Names> namesRead_;
  bool mustAskForAdapters_ = true;
  bool isAskingForAdapters_ = false;
  /// The choice, when it is one adapter, as it was offered.
  std::optional<NetworkAdapter> chosen_;

  /// What a search under way holds, weakly.
  std::shared_ptr<BandwidthMonitorModel*> self_;
};

}  // namespace lanternfold
