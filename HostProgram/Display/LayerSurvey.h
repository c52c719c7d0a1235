// How much of a monitor panels leave free, which Wayland tells nobody, but for the size of a
// surface that is to be as wide, or as high, as there is room.
//
// Made by: `LayerWindowPlacer`, one for each monitor.
#pragma once

#include <functional>
#include <gtkmm/window.h>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Two surfaces that nobody sees, a point thick. Main thread.
class LayerSurvey {
 public:
  /// `changed` is called when the room becomes another one, never inside of a call. `output` is
  /// there for as long as this.
  LayerSurvey(GdkMonitor* output, std::function<void()> changed);
  LayerSurvey(const LayerSurvey&) = delete;
  LayerSurvey& operator=(const LayerSurvey&) = delete;

  [[nodiscard]] GdkMonitor* output() const { return output_; }

  /// Points; `whole` as long as the compositor has not said.
  [[nodiscard]] Size room(Size whole) const;

 private:
  void prepare(Gtk::Window& window, bool isAcross);
  void note(int& known, int length);

  GdkMonitor* output_;
  std::function<void()> changed_;
  int width_ = 0;   ///< 0 before it is known
  int height_ = 0;  ///< the same
  Gtk::Window across_;
  Gtk::Window down_;
};

}  // namespace lanternfold
