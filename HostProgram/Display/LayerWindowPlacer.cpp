#include "HostProgram/Display/LayerWindowPlacer.h"

#include <algorithm>
#include <cmath>
#include <gdk/gdkwayland.h>
#include <glibmm/main.h>
#include <gtk-layer-shell/gtk-layer-shell.h>
#include <utility>
#include <wayland-client-protocol.h>

#include "HostProgram/Display/Monitors.h"
#include "HostProgram/Display/TranslucentWindow.h"

namespace lanternfold {
namespace {

constexpr const char* layerNamespace = "lanternfold-widgets";

void putOnLayer(Gtk::Window& window, GtkLayerShellLayer layer) {
  gtk_layer_init_for_window(window.gobj());
  gtk_layer_set_namespace(window.gobj(), layerNamespace);
  gtk_layer_set_layer(window.gobj(), layer);
  gtk_layer_set_anchor(window.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, TRUE);
  gtk_layer_set_anchor(window.gobj(), GTK_LAYER_SHELL_EDGE_TOP, TRUE);
}

/// What was asked for so far holds from now on, not only together with the next frame.
void commit(Gtk::Window& window) {
  // One that is hidden has no surface, even while it is realized.
  if (!window.get_mapped()) return;
  wl_surface_commit(gdk_wayland_window_get_wl_surface(window.get_window()->gobj()));
}

/// From the left top corner of the room on the monitor, in points.
struct Margins {
  int left = 0;
  int top = 0;
  friend bool operator==(const Margins&, const Margins&) = default;
};

Margins marginsOf(Gtk::Window& window) {
  return {.left = gtk_layer_get_margin(window.gobj(), GTK_LAYER_SHELL_EDGE_LEFT),
          .top = gtk_layer_get_margin(window.gobj(), GTK_LAYER_SHELL_EDGE_TOP)};
}

bool isOutside(const Margins& margins, Size room) {
  return margins.left >= room.width || margins.top >= room.height;
}

/// A monitor that has become smaller leaves surfaces outside of it. The compositor asks for no more
/// frames of those, so that the toolkit would wait with the new place for one that never comes:
/// they are made anew.
void moveOnLayer(Gtk::Window& window, const Margins& margins, Size room) {
  const Margins former = marginsOf(window);
  if (former == margins) return;
  if (isOutside(former, room)) window.hide();
  gtk_layer_set_margin(window.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, margins.left);
  gtk_layer_set_margin(window.gobj(), GTK_LAYER_SHELL_EDGE_TOP, margins.top);
}

void placeOnLayer(Gtk::Window& window, const PlacedMonitor& monitor, Point origin, Size size) {
  window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  const Margins margins{.left = static_cast<int>(std::lround(origin.x)),
                        .top = static_cast<int>(std::lround(origin.y))};
  moveOnLayer(window, margins, monitor.area.size);
  // Another monitor makes another surface, which would flicker.
  GdkMonitor* const output = monitorNamed(monitor.area.name);
  if (gtk_layer_get_monitor(window.gobj()) != output) {
    gtk_layer_set_monitor(window.gobj(), output);
  }
  window.show();
}

/// A surface that moves under the pointer is told of the pointer in coordinates that move with it,
/// some of them too late. So the card itself stays where it is, unseen, and another surface with
/// its picture follows the pointer.
class GhostMove final : public WindowPlacer::Move {
 public:
  GhostMove(Gtk::Window& card, Size size, WindowPlacer::Paint paint) : card_(card), size_(size) {
    makeTranslucent(ghost_);
    ghost_.set_size_request(static_cast<int>(size.width), static_cast<int>(size.height));
    putOnLayer(ghost_, GTK_LAYER_SHELL_LAYER_TOP);
    ghost_.signal_draw().connect(
        [paint = std::move(paint)](const Cairo::RefPtr<Cairo::Context>& context) {
          paint(context);
          return true;
        });
    card_.set_opacity(0);
  }
  ~GhostMove() override { card_.set_opacity(1); }
  GhostMove(const GhostMove&) = delete;
  GhostMove& operator=(const GhostMove&) = delete;

  void to(const PlacedMonitor& monitor, Point origin) override {
    placeOnLayer(ghost_, monitor, origin, size_);
  }

 private:
  Gtk::Window& card_;
  Size size_;
  Gtk::Window ghost_;
};

/// Panels that start with the session are there by then.
constexpr unsigned panelSeconds = 10;

}  // namespace

LayerWindowPlacer::LayerWindowPlacer()
    : laterLook_(Glib::signal_timeout().connect_seconds(
          [this] {
            lookAnew();
            return false;
          },
          panelSeconds)) {}

LayerWindowPlacer::~LayerWindowPlacer() { laterLook_.disconnect(); }

void LayerWindowPlacer::lookAnew() {
  for (auto& [name, survey] : surveys_) survey->begin();
}

std::vector<PlacedMonitor> LayerWindowPlacer::roomOn(std::vector<PlacedMonitor> monitors,
                                                     const std::function<void()>& changed) {
  std::erase_if(surveys_, [&monitors](const auto& survey) {
    return std::ranges::find(monitors, survey.first, [](const PlacedMonitor& monitor) {
             return monitor.area.name;
           }) == monitors.end();
  });
  for (PlacedMonitor& monitor : monitors) {
    monitor.area.size = surveyOf(monitor.area.name, changed).room(monitor.area.size);
    monitor.area.workArea = {{0, 0}, monitor.area.size};
  }
  return monitors;
}

/// One that was unplugged and came back is another output.
LayerSurvey& LayerWindowPlacer::surveyOf(const std::string& name,
                                         const std::function<void()>& changed) {
  std::unique_ptr<LayerSurvey>& survey = surveys_[name];
  GdkMonitor* const output = monitorNamed(name);
  if (!survey || survey->output() != output) {
    survey = std::make_unique<LayerSurvey>(output, changed);
  }
  return *survey;
}

void LayerWindowPlacer::prepare(Gtk::Window& window) {
  putOnLayer(window, GTK_LAYER_SHELL_LAYER_BOTTOM);
  gtk_layer_set_keyboard_mode(window.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND);
}

void LayerWindowPlacer::place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin,
                              Size size) {
  placeOnLayer(window, monitor, origin, size);
}

Point LayerWindowPlacer::pointerOnDesktop(const GdkEvent&, Point inWindow,
                                          const Rect& frame) const {
  return {frame.origin.x + inWindow.x, frame.origin.y + inWindow.y};
}

std::unique_ptr<WindowPlacer::Move> LayerWindowPlacer::beginMove(Gtk::Window& window, Size size,
                                                                 Paint paint, const GdkEvent&) {
  // Where it may be put down matters now.
  lookAnew();
  return std::make_unique<GhostMove>(window, size, std::move(paint));
}

/// Some compositors give the keyboard to the oldest surface up there that would take it.
void LayerWindowPlacer::raise(Gtk::Window& window) {
  gtk_layer_set_layer(window.gobj(), GTK_LAYER_SHELL_LAYER_TOP);
  gtk_layer_set_keyboard_mode(window.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
}

/// A surface can ask for the keyboard only so, and only one should.
void LayerWindowPlacer::raiseWithFocus(Gtk::Window& window) {
  gtk_layer_set_layer(window.gobj(), GTK_LAYER_SHELL_LAYER_TOP);
  gtk_layer_set_keyboard_mode(window.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
}

/// Some compositors leave the keyboard to a surface that had it up there for as long as it would
/// take it, and to no window that is opened.
void LayerWindowPlacer::lower(Gtk::Window& window) {
  gtk_layer_set_layer(window.gobj(), GTK_LAYER_SHELL_LAYER_BOTTOM);
  gtk_layer_set_keyboard_mode(window.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
  commit(window);
  gtk_layer_set_keyboard_mode(window.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND);
}

}  // namespace lanternfold
