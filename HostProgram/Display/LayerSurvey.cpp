#include "HostProgram/Display/LayerSurvey.h"

#include <gdkmm/screen.h>
#include <gtk-layer-shell/gtk-layer-shell.h>
#include <utility>

#include <cairomm/region.h>

namespace lanternfold {

LayerSurvey::LayerSurvey(GdkMonitor* output, std::function<void()> changed)
    : output_(output), changed_(std::move(changed)) {
  across_.signal_size_allocate().connect(
      [this](const Gtk::Allocation& size) { note(width_, size.get_width()); });
  down_.signal_size_allocate().connect(
      [this](const Gtk::Allocation& size) { note(height_, size.get_height()); });
  prepare(across_, /*isAcross=*/true);
  prepare(down_, /*isAcross=*/false);
}

Size LayerSurvey::room(Size whole) const {
  return {width_ > 1 ? width_ : whole.width, height_ > 1 ? height_ : whole.height};
}

void LayerSurvey::prepare(Gtk::Window& window, bool isAcross) {
  window.set_app_paintable(true);
  if (const auto visual = window.get_screen()->get_rgba_visual()) {
    gtk_widget_set_visual(GTK_WIDGET(window.gobj()), visual->gobj());
  }
  gtk_layer_init_for_window(window.gobj());
  gtk_layer_set_namespace(window.gobj(), "lanternfold-widgets-room");
  gtk_layer_set_layer(window.gobj(), GTK_LAYER_SHELL_LAYER_BACKGROUND);
  gtk_layer_set_monitor(window.gobj(), output_);
  gtk_layer_set_anchor(window.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, TRUE);
  gtk_layer_set_anchor(window.gobj(), GTK_LAYER_SHELL_EDGE_TOP, TRUE);
  gtk_layer_set_anchor(window.gobj(),
                       isAcross ? GTK_LAYER_SHELL_EDGE_RIGHT : GTK_LAYER_SHELL_EDGE_BOTTOM, TRUE);
  window.set_size_request(1, 1);
  // A screen reader passes by what is there for measuring alone.
  window.get_accessible()->set_role(Atk::ROLE_REDUNDANT_OBJECT);
  // A monitor that is unplugged closes its surfaces; these go with the survey.
  window.signal_delete_event().connect([&window](GdkEventAny*) {
    window.hide();
    return true;
  });
  window.show();
  window.input_shape_combine_region(Cairo::Region::create());
}

void LayerSurvey::note(int& known, int length) {
  if (std::exchange(known, length) != length) changed_();
}

}  // namespace lanternfold
