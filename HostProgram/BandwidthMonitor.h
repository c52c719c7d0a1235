// The host's own bandwidth monitor, as long as its window is open.
//
// Made by: the host's desktop, once. Main thread.
#pragma once

#include <memory>
#include <string>

#include "HostProgram/BandwidthWindow.h"
#include "HostProgram/Cards/CardDrawing.h"
#include "HostProgram/HostServices.h"

namespace lanternfold {

class BandwidthMonitor {
 public:
  /// Both outlive the monitor.
  BandwidthMonitor(const HostServices& services, const CardDrawing& drawing);
  ~BandwidthMonitor();
  BandwidthMonitor(const BandwidthMonitor&) = delete;
  BandwidthMonitor& operator=(const BandwidthMonitor&) = delete;

  /// One window: the one that is open comes to the front, whatever its mode.
  void open(const std::string& url);

  void refreshScheme();
  void setLocked(bool isLocked);
  void resumed();
  void networkPathChanged();

 private:
  struct Opened;

  void close();

  const HostServices& services_;
  const CardDrawing& drawing_;
  bool isLocked_ = false;
  std::unique_ptr<Opened> opened_;  ///< null while the window is closed
  /// What works look at that may come when the monitor is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
