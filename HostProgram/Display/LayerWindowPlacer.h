// Widgets on the layer of a Wayland compositor that lies between the wallpaper and the windows.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "HostProgram/Display/LayerSurvey.h"
#include "HostProgram/Display/WindowPlacer.h"

namespace lanternfold {

class LayerWindowPlacer final : public WindowPlacer {
 public:
  LayerWindowPlacer();
  ~LayerWindowPlacer() override;
  LayerWindowPlacer(const LayerWindowPlacer&) = delete;
  LayerWindowPlacer& operator=(const LayerWindowPlacer&) = delete;

  /// The compositor counts from where panels end, and so does what is returned.
  [[nodiscard]] std::vector<PlacedMonitor> roomOn(std::vector<PlacedMonitor> monitors,
                                                  const std::function<void()>& changed) override;
  void prepare(Gtk::Window& window) override;
  void place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin, Size size) override;
  [[nodiscard]] Point pointerOnDesktop(const GdkEvent& event, Point inWindow,
                                       const Rect& frame) const override;
  [[nodiscard]] std::unique_ptr<Move> beginMove(Gtk::Window& window, Size size, Paint paint,
                                                const GdkEvent& event) override;
  void raise(Gtk::Window& window) override;
  void raiseWithFocus(Gtk::Window& window) override;
  void lower(Gtk::Window& window) override;
  [[nodiscard]] bool choosesPlaces() const override { return true; }
  [[nodiscard]] std::optional<Point> placeOf(Gtk::Window&) const override { return std::nullopt; }
  [[nodiscard]] bool isClosedByUser() const override { return false; }

 private:
  [[nodiscard]] LayerSurvey& surveyOf(const std::string& name,
                                      const std::function<void()>& changed);

  void lookAnew();

  std::map<std::string, std::unique_ptr<LayerSurvey>> surveys_;  ///< by the monitor's name
  sigc::connection laterLook_;
};

}  // namespace lanternfold
