// How much of a monitor panels leave free, which Wayland tells nobody, but for the size of a
// surface that is to be as wide, or as high, as there is room.
//
// Made by: `LayerWindowPlacer`, one for each monitor.
#pragma once

#include <functional>
#include <gdkmm/monitor.h>
#include <gtkmm/window.h>
#include <memory>
#include <sigc++/trackable.h>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Two surfaces that nobody sees, a point thick, until the compositor has said how long they are:
/// if they stayed, a screen reader would count them among the widgets. Main thread.
class LayerSurvey : public sigc::trackable {
 public:
  /// `changed` is called when the room becomes another one, never inside of a call.
  LayerSurvey(GdkMonitor* output, std::function<void()> changed);
  LayerSurvey(const LayerSurvey&) = delete;
  LayerSurvey& operator=(const LayerSurvey&) = delete;

  [[nodiscard]] GdkMonitor* output() const { return output_->gobj(); }

  /// Looks anew.
  void begin();

  /// Points, as of the last look at a monitor of the size `whole`; `whole` itself before there was
  /// one, which then begins.
  [[nodiscard]] Size room(Size whole);

 private:
  /// Of a length that is found out.
  struct Probe {
    Gtk::Window window;
    int length = 0;  ///< 0 before it is known
  };

  [[nodiscard]] std::unique_ptr<Probe> makeProbe(bool isAcross);
  void note(Probe& probe, int length);
  [[nodiscard]] bool isComplete() const;
  void finish();

  Glib::RefPtr<Gdk::Monitor> output_;  ///< may be unplugged by now
  std::function<void()> changed_;
  Size whole_;                     ///< of the monitor that is looked at
  int width_ = 0;                  ///< 0 before it is known
  int height_ = 0;                 ///< the same
  std::unique_ptr<Probe> across_;  ///< null but for during a look
  std::unique_ptr<Probe> down_;    ///< the same
};

}  // namespace lanternfold
