#include "HostProgram/BandwidthMonitor.h"

#include "HostProgram/Links/BandwidthLink.h"

namespace lanternfold {

struct BandwidthMonitor::Opened {
  Opened(const HostServices& services, const CardDrawing& drawing, BandwidthWindowMode mode)
      : model({.counters = services.counters,
               .interfaces = services.interfaces,
               .bestRoutes = services.bestRoutes,
               .mainQueue = services.mainQueue,
               .clock = services.clock,
               .strings = services.strings}),
        window({.model = model,
                .strings = services.strings,
                .measurer = drawing.renderer.measurer(),
                .colours = drawing.renderer.colours(),
                .painter = drawing.renderer.painter(),
                .report = drawing.report},
               mode) {}

  BandwidthMonitorModel model;
  BandwidthWindow window;
};

BandwidthMonitor::BandwidthMonitor(const HostServices& services, const CardDrawing& drawing)
    : services_(services), drawing_(drawing) {}

BandwidthMonitor::~BandwidthMonitor() = default;

void BandwidthMonitor::open(const std::string& url) {
  if (!opened_) {
    opened_ = std::make_unique<Opened>(
        services_, drawing_,
        asksForMiniMonitor(url) ? BandwidthWindowMode::mini : BandwidthWindowMode::whole);
    opened_->model.setLocked(isLocked_);
    refreshScheme();
    opened_->window.signal_hide().connect([this] { close(); });
  }
  opened_->window.present();
}

/// Not inside of the window's own signal. Opened again meanwhile, it stays.
void BandwidthMonitor::close() {
  services_.mainQueue.async([this, alive = std::weak_ptr(isAlive_)] {
    if (!alive.expired() && opened_ && !opened_->window.get_visible()) opened_.reset();
  });
}

void BandwidthMonitor::refreshScheme() {
  if (opened_) opened_->window.setColourScheme(drawing_.scheme);
}

void BandwidthMonitor::setLocked(bool isLocked) {
  isLocked_ = isLocked;
  if (opened_) opened_->model.setLocked(isLocked);
}

void BandwidthMonitor::resumed() {
  if (opened_) opened_->model.resumed();
}

void BandwidthMonitor::networkPathChanged() {
  if (opened_) opened_->model.networkPathChanged();
}

}  // namespace lanternfold
