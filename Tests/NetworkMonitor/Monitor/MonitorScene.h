// A network state monitor among its fakes, with its reports written down as text.
#pragma once

#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

[[nodiscard]] BasicInterface adapter(const std::string& name);
[[nodiscard]] WlanInterface wlanOver(const std::string& name);
[[nodiscard]] CellularProvider providerWith(const std::vector<std::string>& carrierNames);
[[nodiscard]] InternetInfo internetAt(const std::string& ip);

/// Writes one line for each report: the raw value of the up-to-date categories, which fields differ
/// from the report before ("same" when none does), "complete" and the error where there are.
class ReportText {
 public:
  explicit ReportText(NetworkState before) : before_(std::move(before)) {}

  void add(NetworkSourceCategory upToDate, const NetworkState& state, bool complete,
           std::error_code error);
  /// Adds a line that is no report: what the test did at this point.
  void note(const std::string& what) { text_ += "-- " + what + "\n"; }

  [[nodiscard]] const std::string& text() const { return text_; }
  /// Drops the lines so far; the state that the next report is compared with stays.
  void forget() { text_.clear(); }

 private:
  NetworkState before_;
  std::string text_;
};

/// A machine with Wi-Fi on en0, one carrier and the adapters en0, en1 and en5.
struct MonitorScene {
  MonitorScene();
  /// Ends what no test answered, so that nothing is held in a circle.
  ~MonitorScene() { internet->abandon(); }
  MonitorScene(const MonitorScene&) = delete;
  MonitorScene& operator=(const MonitorScene&) = delete;

  /// A monitor of this machine that reports to `reports`.
  [[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeMonitor(
      NetworkSourceCategory active = NetworkSourceCategory::all());
  [[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeMonitorWithoutCellularResolver();

  /// A handler that writes into `reports`.
  [[nodiscard]] NetworkStateMonitor::StateUpdateHandler reporter(
      const std::shared_ptr<NetworkStateMonitor>& monitor);

  FakeStringTable strings;
  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  FakePathMonitorFactory paths;
  std::shared_ptr<FakeInternetInfoResolver> internet = std::make_shared<FakeInternetInfoResolver>();
  std::shared_ptr<FakeInterfaceResolver> interfaces = std::make_shared<FakeInterfaceResolver>();
  std::shared_ptr<FakeWlanInterfaceResolver> wlan = std::make_shared<FakeWlanInterfaceResolver>();
  std::shared_ptr<FakeCellularProviderResolver> cellular =
      std::make_shared<FakeCellularProviderResolver>();
  ReportText reports{NetworkState::initial(strings)};
};

}  // namespace lanternfold
