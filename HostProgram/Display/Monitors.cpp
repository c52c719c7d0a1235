#include "HostProgram/Display/Monitors.h"

#include <algorithm>
#include <chrono>
#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gdkmm/screen.h>
#include <glibmm/main.h>
#include <utility>

#include "HostProgram/Display/SettlingPace.h"
#include "HostProgram/Display/WorkAreaNews.h"

namespace lanternfold {
namespace {

std::string textOf(const char* text) { return text == nullptr ? "" : text; }

/// The connector, such as "DP-1": the only name that users know, which the toolkit gives by an
/// operation that it has deprecated without another one in its place.
std::string connectorOf(int index) {
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  char* const plug = gdk_screen_get_monitor_plug_name(gdk_screen_get_default(), index);
  G_GNUC_END_IGNORE_DEPRECATIONS
  std::string name = textOf(plug);
  g_free(plug);
  return name;
}

std::string nameOf(GdkMonitor* monitor, int index) {
  std::string name = connectorOf(index);
  return name.empty() ? textOf(gdk_monitor_get_model(monitor)) : name;
}

Rect rectOf(const GdkRectangle& rectangle) {
  return {{static_cast<double>(rectangle.x), static_cast<double>(rectangle.y)},
          {static_cast<double>(rectangle.width), static_cast<double>(rectangle.height)}};
}

PlacedMonitor placed(GdkMonitor* monitor, std::string name) {
  GdkRectangle geometry{};
  GdkRectangle workArea{};
  gdk_monitor_get_geometry(monitor, &geometry);
  gdk_monitor_get_workarea(monitor, &workArea);
  const Rect whole = rectOf(geometry);
  Rect free = rectOf(workArea);
  free.origin.x -= whole.origin.x;
  free.origin.y -= whole.origin.y;
  return {.area = {.name = std::move(name),
                   .size = whole.size,
                   .workArea = free,
                   .isPrimary = gdk_monitor_is_primary(monitor) != FALSE},
          .origin = whole.origin};
}

struct NamedMonitor {
  std::string name;
  GdkMonitor* monitor;
};

/// Each has another name, also where the system calls two alike or has none for them.
std::vector<NamedMonitor> namedMonitors() {
  GdkDisplay* const display = gdk_display_get_default();
  std::vector<NamedMonitor> named;
  for (int index = 0; index < gdk_display_get_n_monitors(display); ++index) {
    GdkMonitor* const monitor = gdk_display_get_monitor(display, index);
    std::string name = nameOf(monitor, index);
    const bool isTaken = std::ranges::find(named, name, &NamedMonitor::name) != named.end();
    if (name.empty() || isTaken) {
      name += "#" + std::to_string(index + 1);
    }
    named.push_back({std::move(name), monitor});
  }
  return named;
}

}  // namespace

std::vector<PlacedMonitor> currentMonitors() {
  std::vector<PlacedMonitor> monitors;
  for (NamedMonitor& named : namedMonitors()) {
    monitors.push_back(placed(named.monitor, std::move(named.name)));
  }
  return monitors;
}

GdkMonitor* monitorNamed(const std::string& name) {
  for (const NamedMonitor& named : namedMonitors()) {
    if (named.name == name) return named.monitor;
  }
  return nullptr;
}

class MonitorWatch::State {
 public:
  State(const Clock& clock, std::function<void()> changed)
      : clock_(clock), changed_(std::move(changed)) {
    const auto display = Gdk::Display::get_default();
    const auto plugged = [this](const Glib::RefPtr<Gdk::Monitor>&) { hear(); };
    lasting_.push_back(display->signal_monitor_added().connect(plugged));
    lasting_.push_back(display->signal_monitor_removed().connect(plugged));
    lasting_.push_back(
        Gdk::Screen::get_default()->signal_monitors_changed().connect([this] { hear(); }));
    listenToMonitors();
  }
  ~State() {
    settling_.disconnect();
    disconnectAll(lasting_);
    disconnectAll(ofMonitors_);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void hear() {
    const auto now = clock_.steadyNow();
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(pace_.change(now) - now);
    settling_.disconnect();
    settling_ = Glib::signal_timeout().connect(
        [this] {
          pace_.settle();
          listenToMonitors();
          changed_();
          return false;
        },
        static_cast<unsigned>(std::max<long>(wait.count(), 0)));
  }

 private:
  static void disconnectAll(std::vector<sigc::connection>& connections) {
    for (sigc::connection& connection : connections) connection.disconnect();
    connections.clear();
  }

  void listenToMonitors() {
    disconnectAll(ofMonitors_);
    const auto display = Gdk::Display::get_default();
    for (int index = 0; index < display->get_n_monitors(); ++index) {
      const auto monitor = display->get_monitor(index);
      const auto changed = [this] { hear(); };
      ofMonitors_.push_back(monitor->property_geometry().signal_changed().connect(changed));
      ofMonitors_.push_back(monitor->property_workarea().signal_changed().connect(changed));
      ofMonitors_.push_back(monitor->property_scale_factor().signal_changed().connect(changed));
    }
  }

  const Clock& clock_;
  std::function<void()> changed_;
  std::vector<sigc::connection> lasting_;
  std::vector<sigc::connection> ofMonitors_;
  SettlingPace pace_;
  sigc::connection settling_;
  WorkAreaNews workAreas_{[this] { hear(); }};
};

MonitorWatch::MonitorWatch(const Clock& clock, std::function<void()> changed)
    : state_(std::make_unique<State>(clock, std::move(changed))) {}

MonitorWatch::~MonitorWatch() = default;

void MonitorWatch::countAgain() { state_->hear(); }

}  // namespace lanternfold
