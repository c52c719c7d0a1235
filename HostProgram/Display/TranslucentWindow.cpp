#include "HostProgram/Display/TranslucentWindow.h"

#include <gdkmm/screen.h>
#include <gtk/gtk.h>

namespace lanternfold {

void makeTranslucent(Gtk::Window& window) {
  window.set_app_paintable(true);
  if (const auto visual = window.get_screen()->get_rgba_visual()) {
    gtk_widget_set_visual(GTK_WIDGET(window.gobj()), visual->gobj());
  }
}

}  // namespace lanternfold
