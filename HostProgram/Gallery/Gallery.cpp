#include "HostProgram/Gallery/Gallery.h"

#include <utility>

namespace lanternfold {

Gallery::Gallery(const HostServices& services, const CardDrawing& drawing, Tell tell)
    : services_(services), drawing_(drawing), tell_(std::move(tell)) {}

Gallery::~Gallery() = default;

void Gallery::open() {
  if (!window_) {
    window_ = std::make_unique<GalleryWindow>(
        GalleryWindow::Surroundings{
            .extension = services_.extension,
            .onDesktop = [this](const auto& kind,
                                WidgetFamily family) { return shownAlready(kind, family); },
            .drawing = drawing_,
            .strings = services_.strings,
            .add = [this](const std::string& kind, WidgetFamily family) { add(kind, family); }},
        services_.desk.catalogue());
    window_->signal_hide().connect([this] { close(); });
  }
  window_->present();
}

/// Not inside of the window's own signal. Opened again meanwhile, it stays.
void Gallery::close() {
  services_.mainQueue.async([this, alive = std::weak_ptr(isAlive_)] {
    if (!alive.expired() && window_ && !window_->get_visible()) window_.reset();
  });
}

void Gallery::refreshScheme() {
  if (window_) window_->refresh();
}

void Gallery::catalogueChanged() {
  if (window_) window_->showCatalogue(services_.desk.catalogue());
}

void Gallery::forgetAll() {
  if (window_) window_->askAnew();
}

/// Cards of an extension that is left alone show a card of the host's own.
std::optional<ViewEntry> Gallery::shownAlready(const std::string& kind, WidgetFamily family) const {
  if (services_.extension.hasFailedTooOften()) return std::nullopt;
  return previewOnDesktop(services_.desk.cards(), kind, family);
}

void Gallery::add(const std::string& kind, WidgetFamily family) {
  const auto added = services_.desk.add(kind, family, {}, std::nullopt);
  if (!added) tell_(added.error());
}

}  // namespace lanternfold
