// One widget in one size, as the gallery shows it: a live preview, and the button that adds it.
//
// Made by: `GalleryWindow`, for each size of each kind. Main thread.
#pragma once

#include <functional>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/label.h>
#include <string>

#include "HostProgram/Cards/CardPicture.h"
#include "HostProgram/Gallery/PreviewQuestions.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// Shows sample data at first, and what it shows of this machine when that is known.
class PreviewTile final : public Gtk::Box {
 public:
  struct Surroundings {
    PreviewQuestions& questions;
    const CardDrawing& drawing;
    const StringTable& strings;
    /// Has the widget added.
    std::function<void(const std::string& kind, WidgetFamily family)> add;
  };

  /// Everything outlives the tile, but for the questions: they end before, since they show their
  /// answers on it.
  PreviewTile(const Surroundings& surroundings, const WidgetDescription& description,
              WidgetFamily family);
  PreviewTile(const PreviewTile&) = delete;
  PreviewTile& operator=(const PreviewTile&) = delete;

  /// The colour scheme has changed.
  void refresh();

 private:
  void buildPreview(const std::string& displayName);
  void showEntry(const ViewEntry& entry);
  void showPicture();
  bool paint(const Cairo::RefPtr<Cairo::Context>& context);
  void add() const { surroundings_.add(kind_, family_); }

  Surroundings surroundings_;
  std::string kind_;
  WidgetFamily family_;
  CardState state_;
  CardPicture picture_;
  Gtk::EventBox pointer_;
  Gtk::DrawingArea preview_;
  Gtk::Label size_;
  Gtk::Button button_;
};

}  // namespace lanternfold
