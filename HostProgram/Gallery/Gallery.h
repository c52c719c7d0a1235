// The gallery from which the user adds widgets, as long as its window is open.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "HostProgram/Cards/CardDrawing.h"
#include "HostProgram/Gallery/GalleryWindow.h"
#include "HostProgram/HostServices.h"

namespace lanternfold {

class Gallery {
 public:
  /// `tell` is told of a widget that cannot be added, in a sentence without its full stop.
  using Tell = std::function<void(const std::string& sentence)>;

  /// The services and `drawing` outlive the gallery.
  Gallery(const HostServices& services, const CardDrawing& drawing, Tell tell);
  ~Gallery();
  Gallery(const Gallery&) = delete;
  Gallery& operator=(const Gallery&) = delete;

  /// One window: the one that is open comes to the front.
  void open();

  void refreshScheme();
  /// That of the desk.
  void catalogueChanged();
  /// What the previews show may be shown no longer. After the desk has forgotten it.
  void forgetAll();

 private:
  void close();
  [[nodiscard]] std::optional<ViewEntry> shownAlready(const std::string& kind,
                                                      WidgetFamily family) const;
  void add(const std::string& kind, WidgetFamily family);

  const HostServices& services_;
  const CardDrawing& drawing_;
  Tell tell_;
  std::unique_ptr<GalleryWindow> window_;  ///< null while it is closed
  /// What works look at that may come when the gallery is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
