#include "HostProgram/Display/LayerSurvey.h"

#include <glibmm/main.h>
#include <gtk-layer-shell/gtk-layer-shell.h>
#include <utility>

#include <cairomm/region.h>

#include "HostProgram/Display/TranslucentWindow.h"

namespace lanternfold {
namespace {

void putAcross(Gtk::Window& window, GdkMonitor* output, GtkLayerShellEdge farEdge) {
  gtk_layer_init_for_window(window.gobj());
  gtk_layer_set_namespace(window.gobj(), "lanternfold-widgets-room");
  gtk_layer_set_layer(window.gobj(), GTK_LAYER_SHELL_LAYER_BACKGROUND);
  gtk_layer_set_monitor(window.gobj(), output);
  for (const GtkLayerShellEdge edge :
       {GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_TOP, farEdge}) {
    gtk_layer_set_anchor(window.gobj(), edge, TRUE);
  }
}

void makeUnseen(Gtk::Window& window) {
  makeTranslucent(window);
  window.set_size_request(1, 1);
}

}  // namespace

LayerSurvey::LayerSurvey(GdkMonitor* output, std::function<void()> changed)
    : output_(Glib::wrap(output, true)), changed_(std::move(changed)) {}

/// What was found in a larger monitor would keep widgets outside of one that has become smaller.
Size LayerSurvey::room(Size whole) {
  if (whole != whole_) {
    whole_ = whole;
    width_ = height_ = 0;
    across_.reset();
    down_.reset();
    begin();
  }
  if (width_ == 0) return whole;
  return {static_cast<double>(width_), static_cast<double>(height_)};
}

void LayerSurvey::begin() {
  if (across_) return;
  across_ = makeProbe(/*isAcross=*/true);
  down_ = makeProbe(/*isAcross=*/false);
}

std::unique_ptr<LayerSurvey::Probe> LayerSurvey::makeProbe(bool isAcross) {
  auto probe = std::make_unique<Probe>();
  Gtk::Window& window = probe->window;
  makeUnseen(window);
  putAcross(window, output(), isAcross ? GTK_LAYER_SHELL_EDGE_RIGHT : GTK_LAYER_SHELL_EDGE_BOTTOM);
  window.signal_size_allocate().connect(
      [this, found = probe.get(), isAcross](const Gtk::Allocation& size) {
        note(*found, isAcross ? size.get_width() : size.get_height());
      });
  // A monitor that is unplugged closes its surfaces; these go with the look.
  window.signal_delete_event().connect([&window](GdkEventAny*) {
    window.hide();
    return true;
  });
  window.show();
  window.input_shape_combine_region(Cairo::Region::create());
  return probe;
}

/// The toolkit gives them their own small size first.
void LayerSurvey::note(Probe& probe, int length) {
  if (length <= 1) return;
  probe.length = length;
  if (isComplete()) Glib::signal_idle().connect_once(sigc::mem_fun(*this, &LayerSurvey::finish));
}

bool LayerSurvey::isComplete() const {
  return across_ && across_->length > 0 && down_ && down_->length > 0;
}

/// A look that has begun since then is not over.
void LayerSurvey::finish() {
  if (!isComplete()) return;
  const auto across = std::exchange(across_, nullptr);
  const auto down = std::exchange(down_, nullptr);
  const int formerWidth = std::exchange(width_, across->length);
  const int formerHeight = std::exchange(height_, down->length);
  if (formerWidth != width_ || formerHeight != height_) changed_();
}

}  // namespace lanternfold
