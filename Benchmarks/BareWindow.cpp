// usage: lanternfold-bare-window
// The least that a program with a window of GTK 3 can be: what the widgets' host is measured
// beside.
#include <gtk/gtk.h>

int main(int argumentCount, char** arguments) {
  gtk_init(&argumentCount, &arguments);
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 364, 170);
  gtk_container_add(GTK_CONTAINER(window), gtk_label_new("One text"));
  gtk_widget_show_all(window);
  gtk_main();
  return 0;
}
