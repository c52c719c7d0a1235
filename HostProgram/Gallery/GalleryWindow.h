// The window from which the user adds widgets: every kind in every size, as it would look.
//
// Made by: the host's application when it is asked for, and let go of when it is closed. Main
// thread.
#pragma once

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>
#include <memory>
#include <vector>

#include "HostProgram/Gallery/PreviewTile.h"

namespace lanternfold {

class GalleryWindow final : public Gtk::Window {
 public:
  GalleryWindow(const PreviewTile::Surroundings& surroundings,
                const std::vector<WidgetDescription>& catalogue);

  /// The colour scheme has changed.
  void refresh();

 protected:
  bool on_key_press_event(GdkEventKey* event) override;

 private:
  void addKind(const PreviewTile::Surroundings& surroundings, const WidgetDescription& description);

  Gtk::ScrolledWindow scrolled_;
  Gtk::Box kinds_;
  std::vector<std::unique_ptr<PreviewTile>> tiles_;
};

}  // namespace lanternfold
