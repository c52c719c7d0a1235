// The window from which the user adds widgets: every kind in every size, as it would look.
//
// Made by: `Gallery` when it is asked for, and let go of when it is closed. Main thread.
#pragma once

#include <functional>
#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>
#include <memory>
#include <string>
#include <vector>

#include "HostProgram/Gallery/PreviewTile.h"

namespace lanternfold {

class GalleryWindow final : public Gtk::Window {
 public:
  struct Surroundings {
    WidgetExtension& extension;
    PreviewQuestions::OnDesktop onDesktop;
    const CardDrawing& drawing;
    const StringTable& strings;
    /// Has the widget added.
    std::function<void(const std::string& kind, WidgetFamily family)> add;
  };

  /// Everything outlives the window.
  GalleryWindow(Surroundings surroundings, std::vector<WidgetDescription> catalogue);

  /// In the place of the one that it shows.
  void showCatalogue(std::vector<WidgetDescription> catalogue);

  /// Until the previews are answered they show nothing.
  void askAnew();

  /// The colour scheme has changed.
  void refresh();

 protected:
  bool on_key_press_event(GdkEventKey* event) override;

 private:
  void build();
  void clear();
  void addKind(const WidgetDescription& description);

  Surroundings surroundings_;
  std::vector<WidgetDescription> catalogue_;
  Gtk::ScrolledWindow scrolled_;
  Gtk::Box kinds_;
  std::vector<std::unique_ptr<PreviewTile>> tiles_;
  std::unique_ptr<PreviewQuestions> questions_;  ///< those of `tiles_`; never null
};

}  // namespace lanternfold
