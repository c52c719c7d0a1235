// The window of the bandwidth monitor: a choice of adapters, and below it the card with the rates
// and the graph.
//
// Made by: `BandwidthMonitor`, when the monitor's link is opened and no other program opens it.
#pragma once

#include <functional>
#include <gtkmm/box.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/window.h>
#include <string_view>
#include <vector>

#include "Platform/StringTable.h"
#include "Rendering/Painter.h"
#include "ViewTree/Colour.h"
#include "ViewTree/TextMeasurer.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorModel.h"

namespace lanternfold {

enum class BandwidthWindowMode {
  whole,
  mini,  ///< as small as the figures and the graph allow
};

/// An ordinary window; closing it, also by Escape, hides it. Its model reads the counters as long
/// as the window is shown and not minimised. Main thread.
class BandwidthWindow final : public Gtk::Window {
 public:
  /// All of it outlives the window.
  struct Surroundings {
    BandwidthMonitorModel& model;
    const StringTable& strings;
    const TextMeasurer& measurer;
    const ColourPalette& colours;
    Painter& painter;
    /// Told, a line each, what has to be drawn by a stand-in.
    std::function<void(std::string_view)> report;
  };

  BandwidthWindow(Surroundings surroundings, BandwidthWindowMode mode);
  ~BandwidthWindow() override;
  BandwidthWindow(const BandwidthWindow&) = delete;
  BandwidthWindow& operator=(const BandwidthWindow&) = delete;

  void setColourScheme(ColourScheme scheme);

 protected:
  void on_show() override;
  void on_hide() override;
  bool on_window_state_event(GdkEventWindowState* event) override;
  bool on_key_press_event(GdkEventKey* event) override;

 private:
  void buildChooser(BandwidthWindowMode mode);
  void buildCard();
  void setUsualSize(BandwidthWindowMode mode);
  void makeRoomForNames();
  void follow();
  void refresh();
  void refreshChooser();
  void describeCard();
  bool drawBackground(const Cairo::RefPtr<Cairo::Context>& context);
  bool drawCard(const Cairo::RefPtr<Cairo::Context>& context);

  Surroundings surroundings_;
  ColourScheme scheme_ = ColourScheme::light;
  bool isMinimised_ = false;
  Glib::RefPtr<Gtk::CssProvider> look_ = Gtk::CssProvider::create();
  Gtk::Box box_{Gtk::ORIENTATION_VERTICAL};
  Gtk::ComboBoxText chooser_;
  Gtk::DrawingArea card_;
  sigc::connection chosen_;
  std::vector<NetworkAdapter> offered_;  ///< what the chooser lists
};

}  // namespace lanternfold
