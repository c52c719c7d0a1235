// Keeps one `NetworkState` current: asks a resolver per category, writes each answer into the state
// and reports every write.
//
// Made by: one timeline request or command each. Read by: its update handler.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <system_error>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkMonitor/Monitor/Resolvers.h"
#include "Platform/PathMonitor.h"

namespace lanternfold {

/// Queues: `start`, `stop`, `refresh` and path updates belong on the main queue; the answers of the
/// internet resolver are written on whatever queue it calls back on. No lock is taken: whoever
/// needs one thread lets the resolver call back on it.
///
/// Lifetime: held by `std::shared_ptr`. An outstanding internet resolution keeps the monitor alive;
/// its path monitor does not. The update handler may do anything from inside a report: call the
/// monitor, replace itself, let go of the monitor.
class NetworkStateMonitor : public std::enable_shared_from_this<NetworkStateMonitor> {
 public:
  /// `complete`: every active category is up to date. `error` is empty when there is none.
  using StateUpdateHandler =
      std::function<void(const NetworkState& state, bool complete, std::error_code error)>;

  /// What the monitor needs of the system, beside its resolvers. All outlive the monitor.
  struct Environment {
    PathMonitorFactory& pathMonitors;
    DispatchQueue& mainQueue;
    const StringTable& strings;
  };

  /// `cellularProvidersResolver` may be null, the others may not.
  NetworkStateMonitor(std::shared_ptr<InternetInfoResolver> internetInfoResolver,
                      std::shared_ptr<InterfaceResolver> interfaceResolver,
                      std::shared_ptr<WlanInterfaceResolver> wlanInterfaceResolver,
                      std::shared_ptr<CellularProviderResolver> cellularProvidersResolver,
                      const Environment& environment);

  /// Refreshes at once and again at every change of the network path. Replaces an earlier path
  /// monitor without cancelling it.
  void start();
  /// No further path-driven refreshes. Answers already asked for still arrive and are reported.
  void stop();
  /// Resolves every active category afresh.
  void refresh();
  /// Resolves `categories` only, without resetting the others.
  void resolve(NetworkSourceCategory categories);

  [[nodiscard]] NetworkSourceCategory activeCategories() const { return activeCategories_; }
  void setActiveCategories(NetworkSourceCategory categories) { activeCategories_ = categories; }
  void setStateUpdateHandler(StateUpdateHandler handler);

  [[nodiscard]] const NetworkState& currentState() const { return currentState_; }
  /// Replaces the state and reports.
  void setCurrentState(NetworkState state);
  [[nodiscard]] NetworkSourceCategory upToDateCategories() const { return upToDateCategories_; }

  /// Whether exactly the active categories are up to date: equality of the raw values.
  [[nodiscard]] bool stateComplete() const;
  [[nodiscard]] bool isCellularAvailable() const;

 private:
  void resolveCategories(NetworkSourceCategory categories);
  void resolveWlan();
  void resolveCellular();
  void resolveOthers();
  void resolveInternet();
  void receive(const InternetInfo& info, bool complete, std::error_code error);

  /// One write of a field of the state, and its report.
  template <typename Field, typename Value>
  void store(Field NetworkState::* field, Value&& value);
  /// One write of the categories, and its report.
  void setUpToDateCategories(NetworkSourceCategory categories);
  void markUpToDate(NetworkSourceCategory category);
  void report(std::error_code error = {});

  // In the order of their roles: who answers, what listens, what is known.
  std::shared_ptr<InternetInfoResolver> internetInfoResolver_;
  std::shared_ptr<InterfaceResolver> interfaceResolver_;
  std::shared_ptr<WlanInterfaceResolver> wlanInterfaceResolver_;
  std::shared_ptr<CellularProviderResolver> cellularProvidersResolver_;
  Environment environment_;
  std::unique_ptr<PathMonitor> pathMonitor_;
  NetworkState currentState_;
  NetworkSourceCategory activeCategories_ = NetworkSourceCategory::all();
  NetworkSourceCategory upToDateCategories_;
  /// Null when there is none. Shared with the report that is calling it, so that it may replace
  /// itself.
  std::shared_ptr<const StateUpdateHandler> stateUpdateHandler_;
};

}  // namespace lanternfold
