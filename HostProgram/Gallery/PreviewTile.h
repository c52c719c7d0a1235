// One widget in one size, as the gallery shows it: a live preview, and the button that adds it.
#pragma once

#include <functional>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/label.h>
#include <memory>
#include <string>

#include "HostProgram/Cards/CardPicture.h"
#include "Platform/StringTable.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

/// Asks the extension for a placeholder at first, for what it shows of this machine then.
class PreviewTile final : public Gtk::Box {
 public:
  struct Surroundings {
    WidgetExtension& extension;
    const CardDrawing& drawing;
    const StringTable& strings;
    /// Has the widget added.
    std::function<void(const std::string& kind, WidgetFamily family)> add;
  };

  /// Everything outlives the tile.
  PreviewTile(const Surroundings& surroundings, const WidgetDescription& description,
              WidgetFamily family);
  ~PreviewTile() override;
  PreviewTile(const PreviewTile&) = delete;
  PreviewTile& operator=(const PreviewTile&) = delete;

  /// The colour scheme has changed.
  void refresh();

 private:
  void buildPreview(const std::string& displayName);
  void askForPlaceholder();
  void askForTimeline();
  void showEntry(const ViewEntry& entry);
  void showPicture();
  bool paint(const Cairo::RefPtr<Cairo::Context>& context);
  void add() const { surroundings_.add(kind_, family_); }

  Surroundings surroundings_;
  std::string kind_;
  WidgetFamily family_;
  CardState state_;
  CardPicture picture_;
  WidgetExtension::Question question_ = 0;
  /// What answers look at that may come when the tile is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
  Gtk::EventBox pointer_;
  Gtk::DrawingArea preview_;
  Gtk::Label size_;
  Gtk::Button button_;
};

}  // namespace lanternfold
